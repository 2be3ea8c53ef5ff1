#include "shelltemp/FittingModelParser.h"

#include <gtest/gtest.h>
#include <json/reader.h>

#include "support/EngineTest.h"
#include "support/Phone.h"

using kelvo::FittingModel;
using kelvo::TempFittingModel;

namespace {

struct FittingModelParserTest : testing::Test {
    FittingModelParserTest() {
        sim::DeviceTree tree = phone();
        tree.addZone(0, "cpu", 40000);
        tree.addZone(1, "gpu", 40000);
        count = table.discover();
    }

    TempFittingModel parse(const std::string& models) {
        Json::Value scene;
        EXPECT_TRUE(Json::Reader().parse(json("{'temp_model':" + models + "}"), scene)) << models;
        return kelvo::FittingModelParser(table, count).parseScene("default", scene, names);
    }

    /** "name:index ..." in the order of the set. */
    static std::string summary(const TempFittingModel& set) {
        std::string text;
        for (const FittingModel& model : set.models) {
            text += model.name + ":" + std::to_string(model.index) + " ";
        }
        return text;
    }

    kelvo::ZoneTable table;
    int32_t count = 0;
    std::map<int32_t, std::string> names;
};

}  // namespace

TEST_F(FittingModelParserTest, keepsUsableModelsInTheOrderOfTheirNames) {
    const std::string good = "'index':0,'thermal_zone':['cpu'],'coefficient':[1]";
    const std::pair<std::string, const char*> cases[] = {
            {"{'front':{'index':1,'thermal_zone':['cpu'],'coefficient':[1]},'back':{" + good + "}}",
             "back:0 front:1 "},
            {"{'a':{" + good + "},'b':{'index':'1','thermal_zone':['cpu'],'coefficient':[1]}}",
             "a:0 "},
            {"{'a':{'thermal_zone':['cpu'],'coefficient':[1]}}", ""},
            {"{'a':{'index':0,'thermal_zone':'cpu','coefficient':[1]}}", ""},
            {"{'a':{'index':0,'thermal_zone':['cpu'],'coefficient':1}}", ""},
            {"{'a':{'index':0,'thermal_zone':['cpu'],'coefficient':[0.5,'x']}}", ""},
            {"{'a':7}", ""},
            // A number equal to the count of zones is accepted, one more is not.
            {"{'a':{'index':0,'thermal_zone':[2],'coefficient':[1]}}", "a:0 "},
            {"{'a':{'index':0,'thermal_zone':[3],'coefficient':[1]}}", ""},
            {"{'a':{'index':0,'thermal_zone':[-1],'coefficient':[1]}}", ""},
            {"{'a':{'index':0,'thermal_zone':[4294967295],'coefficient':[1]}}", ""},
            // An unknown zone drops what was read before; models that sort later still load.
            {"{'a':{" + good + "},'b':{'index':1,'thermal_zone':['x'],'coefficient':[1]},'c':{" +
                     good + "}}",
             "c:0 "},
    };
    for (const auto& [models, expected] : cases) {
        EXPECT_EQ(summary(parse(models)), expected) << models;
    }
}

TEST_F(FittingModelParserTest, readsZonesTypeAndCoefficients) {
    const TempFittingModel set =
            parse("{'a':{'index':4,'thermal_zone':['gpu',0],'coefficient':[1,2.5],'type':2},"
                  "'b':{'index':5,'thermal_zone':['cpu'],'coefficient':[1],'type':-2}}");
    ASSERT_EQ(set.models.size(), 2u);
    const FittingModel& model = set.models[0];
    ASSERT_EQ(model.zones.size(), 2u);
    EXPECT_EQ(model.zones[0].index, 1);
    EXPECT_EQ(model.zones[0].name, "gpu");
    EXPECT_EQ(model.zones[1].index, 0);
    EXPECT_EQ(model.zones[1].name, "");
    EXPECT_EQ(model.type, 2u);
    EXPECT_EQ(model.coefficients, (std::vector<double>{1.0, 2.5}));
    EXPECT_EQ(set.models[1].type, kelvo::kLinearModel) << "a type that is no unsigned int";
}
