#include "shelltemp/ModelFit.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "sim/tree/DeviceTree.h"
#include "support/LogCapture.h"

using kelvo::FittingModel;
using kelvo::ModelFit;

namespace {

const kelvo::ThermalZone kSkin{0, "skin"};
const kelvo::ThermalZone kCpu{1, "cpu"};

class ModelFitTest : public testing::Test {
  protected:
    ModelFitTest() {
        tree.addZone(0, "skin", 40000);
        tree.addZone(1, "cpu", std::nullopt);
    }

    LogCapture log;
    sim::DeviceTree tree{getenv("KELVO_ROOT")};
    kelvo::CheckedZones zones;
};

}  // namespace

TEST_F(ModelFitTest, givesAValueUnlessAZoneFailsOrTheTypeIsUnknown) {
    const struct {
        FittingModel model;
        std::optional<int32_t> value;
        int32_t failed;
        const char* says;
    } cases[] = {
            {{0, "a", {kSkin}, 1, {0.5, 100}}, 20100, -1, nullptr},
            {{0, "a", {kSkin}, 7, {0.5}}, {}, -1, "fitting model (7) has not supported!"},
            {{0, "a", {kSkin, kCpu}, 1, {0.5}}, {}, 1, "Recording abnormal tz:1 state:1."},
            {{0, "a", {}, 1, {33}},
             33,
             -1,
             "can't get any tz temp from tzs{name(a), sz(0), scene(here)}"},
    };
    for (const auto& test : cases) {
        log.clear();
        const ModelFit fit = kelvo::fitModel(test.model, "here", zones);
        EXPECT_EQ(fit.value, test.value) << test.model.type;
        EXPECT_EQ(fit.failedZone == nullptr ? -1 : fit.failedZone->index, test.failed);
        if (test.says != nullptr) {
            EXPECT_EQ(log.count(test.says), 1u) << test.says;
        }
    }
}

TEST_F(ModelFitTest, showsAllModelsOfACycleOneTemperature) {
    const FittingModel model{0, "a", {kSkin, kSkin}, 1, {1, 1}};
    EXPECT_EQ(kelvo::fitModel(model, "here", zones).value, 80000);
    tree.setZoneTemp(0, 41000);
    EXPECT_EQ(kelvo::fitModel(model, "here", zones).value, 80000);
    zones.beginCycle();
    EXPECT_EQ(kelvo::fitModel(model, "here", zones).temps, (std::vector<int32_t>{41000, 41000}));
}

TEST_F(ModelFitTest, readsAFailingZoneAgainForTheNextModel) {
    const FittingModel model{0, "a", {kCpu}, 1, {1}};
    kelvo::fitModel(model, "here", zones);
    tree.setZoneTemp(1, 35000);
    EXPECT_EQ(kelvo::fitModel(model, "here", zones).value, 35000);
    EXPECT_TRUE(log.has("The tzone 1 has been restored."));
}
