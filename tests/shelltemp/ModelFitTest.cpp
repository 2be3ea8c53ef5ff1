#include "shelltemp/ModelFit.h"

#include <gtest/gtest.h>

#include "support/LogCapture.h"
#include "support/Phone.h"

using kelvo::FittingModel;
using kelvo::ModelFit;

namespace {

const kelvo::ThermalZone kSkin{0, "skin"};
const kelvo::ThermalZone kCpu{1, "cpu"};

struct ModelFitTest : testing::Test {
    ModelFitTest() {
        tree.addZone(0, "skin", 40000);
        tree.addZone(1, "cpu", std::nullopt);
    }

    LogCapture log;
    sim::DeviceTree tree = phone();
    kelvo::CheckedZones zones;
};

}  // namespace

TEST_F(ModelFitTest, givesAValueUnlessAZoneFailsOrTheTypeIsUnknown) {
    // model, value, failed, says
    const std::tuple<FittingModel, std::optional<int32_t>, int32_t, const char*> cases[] = {
            {{0, "a", {kSkin}, 1, {0.5, 100}}, 20100, -1, nullptr},
            {{0, "a", {kSkin}, 7, {0.5}}, {}, -1, "fitting model (7) has not supported!"},
            {{0, "a", {kSkin, kCpu}, 1, {0.5}}, {}, 1, "Recording abnormal tz:1 state:1."},
            {{0, "a", {}, 1, {33}},
             33,
             -1,
             "can't get any tz temp from tzs{name(a), sz(0), scene(here)}"},
    };
    for (const auto& [model, value, failed, says] : cases) {
        log.clear();
        const ModelFit fit = kelvo::fitModel(model, "here", zones);
        EXPECT_EQ(fit.value, value) << model.type;
        EXPECT_EQ(fit.failedZone == nullptr ? -1 : fit.failedZone->index, failed);
        if (says != nullptr) {
            EXPECT_EQ(log.count(says), 1u) << says;
        }
    }
}

TEST_F(ModelFitTest, readsAFailingZoneAgainForTheNextModel) {
    const FittingModel model{0, "a", {kCpu}, 1, {1}};
    kelvo::fitModel(model, "here", zones);
    tree.setZoneTemp(1, 35000);
    EXPECT_EQ(kelvo::fitModel(model, "here", zones).value, 35000);
    EXPECT_TRUE(log.has("The tzone 1 has been restored."));
}
