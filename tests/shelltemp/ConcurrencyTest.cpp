// The engine with its own thread and callers on several others; the thread sanitizer watches.

#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>

#include <thread>

#include "core/Connections.h"
#include "shelltemp/ShellTempFitting.h"
#include "sim/tree/PhoneTree.h"
#include "sim/tree/ShellTempNode.h"
#include "support/Json.h"

namespace {

constexpr int kRounds = 200;
constexpr int kLimitMs = 20000;

sim::Scenario phone() {
    sim::Scenario scenario;
    scenario.zones = {{"skin", 40000}, {"cpu", 40000}};
    scenario.config.main =
            json("{'thermal_status_model':{'temp_threshold_down':[]},"
                 "'specified_tempzone_info':{'thermal_zone_type':['cpu']},"
                 "'tsensor_tempzone_info':{'thermal_zone_type':['cpu']},"
                 "'shell_temp_fitting_model':{" +
                 scene("default", 0, "skin") + "," + scene("backup_a", 0, "cpu") + "}}");
    return scenario;
}

}  // namespace

TEST(ConcurrencyTest, servesCallersWhileItFitsAndReloads) {
    kelvo::connectEngines();
    android::installLocalServiceManager();
    const sim::Scenario scenario = phone();
    sim::DeviceTree tree(getenv("KELVO_ROOT"));
    sim::ShellTempNode node(tree);
    sim::PhoneTree(tree, scenario, [&](bool present) { node.setPresent(present); }).build();
    auto& engine = ShellTempFitting::getInstance();
    engine.init();

    const auto repeat = [](auto call) {
        return std::thread([call] {
            for (int i = 0; i < kRounds; ++i) {
                call(i);
            }
        });
    };
    std::thread callers[] = {
            repeat([&](int i) { engine.updateScene("app" + std::to_string(i), false, 0); }),
            repeat([&](int i) { engine.switchFittingScene(i % 2 == 0 ? "backup_a" : "default"); }),
            repeat([&](int i) { engine.updateChargeStatus(i % 2 == 0); }),
            repeat([&](int) { engine.getFittingTemps(); }),
            repeat([&](int) {
                std::vector<int> temps;
                engine.getSpecifiedZoneTemps(temps);
            }),
            repeat([&](int i) { i % 50 == 0 ? engine.reload() : engine.isOldSafetyProject(); }),
    };
    for (std::thread& caller : callers) {
        caller.join();
    }

    // It still fits: a new temperature comes out, near enough not to be limited.
    engine.switchFittingScene("default");
    tree.setZoneTemp(0, 40400);
    engine.updateScene("end", false, 0);
    std::string last;
    while (last != "0 40400") {
        pollfd fd{node.fd(), POLLIN, 0};
        ASSERT_EQ(poll(&fd, 1, kLimitMs), 1) << "last written: " << last;
        node.takeLines([&](std::string_view line) { last = line; });
    }
}
