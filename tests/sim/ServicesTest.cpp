#include <gtest/gtest.h>

#include <algorithm>

#include "sim/services/ActionLine.h"
#include "sim/services/PhoneServices.h"

using namespace sim;

TEST(ActionLineTest, carriesEveryActionForAService) {
    const std::vector<Deed> deeds{
            Health{.usb = true, .wireless = true},
            BatteryCurrent{-2147483647 - 1},
            TaskStats{"1\t2\t\"three\"\n\n4"},
            Panel{.max = 255, .level = std::nullopt},
            Frames{60},
            Usage{.cpu = {{1, std::nullopt, -3}}, .wifi = {{}}, .cellular = {}, .display = {}},
            UsageBytes{std::string("\0\x7f\xff", 3)}};
    for (const Deed& deed : deeds) {
        const std::string line = toActionLine(deed);
        EXPECT_EQ(line.find('\n'), std::string::npos) << line;
        const Deed read = parseActionLine(line);
        EXPECT_EQ(read.index(), deed.index());
        EXPECT_EQ(toActionLine(read), line);
    }
    EXPECT_EQ(toActionLine(deeds[0]),
              R"({"ac":false,"do":"health","t":0,"usb":true,"wireless":true})");
    EXPECT_EQ(std::get<UsageBytes>(parseActionLine(toActionLine(deeds[6]))).bytes.size(), 3u);
}

TEST(PhoneServicesTest, keepsValuesWhileAServiceIsDown) {
    Scenario scenario;
    scenario.services = {"charger"};
    std::vector<int32_t> seen;  // the battery current when a service starts
    PhoneServices services(
            scenario,
            [&](const ServiceKind&, const ServiceContext& context) {
                seen.push_back(context.values.get().batteryCurrent);
                return std::make_unique<PhoneService>();
            },
            [](const Event&) {});
    services.start();
    services.perform(ServiceState{"charger", false});
    services.perform(BatteryCurrent{700});
    services.perform(ServiceState{"charger", false});
    services.perform(ServiceState{"charger", true});
    services.perform(ServiceState{"charger", true});
    EXPECT_EQ(seen, (std::vector<int32_t>{0, 700}));
}

TEST(PhoneServicesTest, promisesTheHealthHalThatThePhoneHas) {
    Scenario scenario;
    const auto declared = [&] {
        return PhoneServices(scenario, PhoneServices::launchHere, [](const Event&) {})
                .declaredInstances();
    };
    const std::string health = "android.hardware.health.IHealth/default";
    EXPECT_EQ(std::ranges::count(declared(), health), 1);
    scenario.healthHal = HealthHal::Hidl;
    EXPECT_EQ(std::ranges::count(declared(), health), 0);
}
