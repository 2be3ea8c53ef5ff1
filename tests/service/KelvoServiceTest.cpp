#include "service/KelvoService.h"

#include <binder/IServiceManager.h>

#include "common/ConfigStore.h"
#include "core/DataCollector.h"
#include "core/KelvoState.h"
#include "shelltemp/ShellTempFitting.h"
#include "sim/scenario/PhonePaths.h"
#include "support/EngineTest.h"

namespace {

using Events = std::vector<std::string>;
using Args = std::vector<sim::Argument>;
using Types = std::vector<sim::ReplyType>;
using enum sim::ReplyType;

const std::vector<int32_t> kThresholds(21, 30);

Events replied(uint32_t code, int status, const std::string& values) {
    return {"{'event':'reply','code':" + std::to_string(code) +
            ",'status':" + std::to_string(status) + ",'values':[" + values + "]}"};
}

class KelvoServiceTest : public EngineTest {
  protected:
    KelvoServiceTest() { addZone("skin", 40000); }
    void start(const std::string& models, const std::string& more = "") {
        scenario.config.main = json("{'shell_temp_fitting_model':{'default':{'temp_model':{" +
                                    models + "}}}" + more + "}");
        startPhone();
        runUntil(0);
        takeEvents();
    }
    Events call(uint32_t code, const Args& args, Types reply, uint32_t uid = 1000) {
        phone().perform(sim::Transact{code, args, std::move(reply), uid});
        return takeEvents();
    }
};

}  // namespace

TEST_F(KelvoServiceTest, answersAsClientsExpect) {
    start(model("front", 0, "skin") + "," + model("ref", -1, "skin"),
          ",'cpulimit_process':{'limit_info':['a',1,'b']},'old_safety_project':[]");
    const std::string list = "[30,30,30,30,30,30,30,30,30,30,30,30,30,30,30,30,30,30,30,30,30]";
    const struct {
        uint32_t code;
        Args args;
        Types types;
        std::string values;
    } calls[] = {
            {1, {}, {Int32}, "-1"},
            {1, {sim::ListenerArgument{"l"}}, {Int32}, "1"},
            {2, {}, {Int32}, "1"},
            {4, {}, {Exception, Int32}, "0,-1"},
            {5, {}, {Exception, Int32, Vector, Int32}, "0,0,[],0"},
            {6, {20, kThresholds, 21}, {Int32}, "0"},
            {6, {21, kThresholds, 0, 21, kThresholds}, {Int32}, "1"},
            {5,
             {},
             {Exception, Int32, Vector, Int32, Vector, Int32, Vector},
             "0,21," + list + ",0,[],21," + list},
            {9, {}, {Exception, String}, "0,'0.1.0'"},
            {17, {}, {Float}, "40.0"},
            {20, {}, {Int32, Vector}, "-1,null"},
            {21, {}, {Int32, Vector}, "4,[40000,40000,-1,-1]"},
            {22, {}, {Int32, Int32, Int32}, "-1,3,null"},
            {23, {}, {Int32}, "2"},
            {25, {}, {Int32}, "-2147483648"},
            {101, {}, {Int32, Int32, String, String}, "2,2,'a','b'"},
            {106, {}, {Exception, String}, "0,''"},
            {102, {99}, {Int32}, "null"},
    };
    for (const auto& test : calls) {
        EXPECT_EQ(call(test.code, test.args, test.types).front(),
                  replied(test.code, 0, test.values).front());
    }
}

TEST_F(KelvoServiceTest, refusesStateChangesOfOthers) {
    start(model("front", 0, "skin"));
    for (const uint32_t code :
         {5u, 6u, 10u, 11u, 12u, 15u, 16u, 18u, 19u, 24u, 101u, 102u, 103u, 104u, 105u, 106u}) {
        EXPECT_EQ(call(code, {1}, {}, 10050), replied(code, -1, "")) << code;
        EXPECT_NE(call(code, {7}, {}, 0), replied(code, -1, "")) << code;
    }
    for (const uint32_t code : {1u, 2u, 4u, 9u, 17u, 20u, 21u, 22u, 23u, 25u}) {
        EXPECT_EQ(call(code, {}, {}, 10050), replied(code, 0, "")) << code;
    }
    EXPECT_EQ(log.count("no permission to call this"), 1u);
    for (const uint32_t code : {0u, 3u, 26u, 100u, 107u}) {
        EXPECT_EQ(call(code, {}, {Int32}), replied(code, -74, "")) << code;
    }
}

TEST_F(KelvoServiceTest, wantsItsToken) {
    start(model("front", 0, "skin"));
    const auto service = android::defaultServiceManager()->checkService(android::String16("kelvo"));
    android::Parcel data;
    data.writeInterfaceToken(android::String16("com.zenta.kelvo.IOther"));
    for (const uint32_t code : {1u, 17u, 21u}) {
        android::Parcel reply;
        EXPECT_EQ(service->transact(code, data, &reply), android::PERMISSION_DENIED);
        EXPECT_EQ(reply.dataSize(), 0u);
    }
    EXPECT_TRUE(log.has("currentTemp=40.000000\n")) << "said before the token is looked at";
    android::Parcel good;
    good.writeInterfaceToken(service->getInterfaceDescriptor());
    EXPECT_EQ(service->transact(4, good, nullptr), android::OK) << "no reply wanted";
}

TEST_F(KelvoServiceTest, givesFourShellTemperatures) {
    const std::string four = model("a", 0, "skin") + "," + model("b", 1, "skin") + "," +
                             model("c", 2, "skin") + "," + model("d", 3, "skin");
    addZone("ref", 39000);
    start(four + "," + model("ref", -1, "ref"));
    EXPECT_EQ(call(21, {}, {Int32, Vector}), replied(21, 0, "4,[40000,40000,40000,40000]"))
            << "five with the reference: that one is dropped";
}

TEST_F(KelvoServiceTest, answersForTheBatteryWithItsOwnZones) {
    addZone("cell", 33000);
    start(model("front", 0, "skin"), ",'specified_tempzone_info':{'thermal_zone_type':['cell']}");
    EXPECT_EQ(call(20, {}, {Int32, Vector}), replied(20, 0, "1,[33000]"));
    EXPECT_EQ(call(22, {}, {Int32, Int32}), replied(22, 0, "33000,3"));
    phone().perform(sim::SetZones{{{1, std::nullopt}}});
    runUntil(20);
    EXPECT_EQ(call(22, {}, {Int32, Int32}), replied(22, 0, "-1,3"));
}

TEST_F(KelvoServiceTest, handsOverBigDataOnce) {
    auto& collector = kelvo::DataCollector::getInstance();
    start(model("front", 0, "skin"));
    collector.setData(kelvo::DC_PKG, "k", "f", "v");
    const std::string text =
            "0,'{\\n\\t\\'pkg\\' : \\n\\t{\\n\\t\\t\\'k\\' : \\n\\t\\t{\\n\\t\\t\\t"
            "\\'f\\' : \\'v\\'\\n\\t\\t}\\n\\t}\\n}\\n'";
    EXPECT_EQ(call(16, {}, {Exception, String}), replied(16, 0, text));
    EXPECT_EQ(call(10, {}, {Exception, String}), replied(10, 0, text)) << "16 left it";
    EXPECT_TRUE(collector.getData()["pkg"].isNull());
    phone().perform(sim::SetProperties{{{"persist.sys.kelvo.dc", "0"}}});
    collector.setData(kelvo::DC_PKG, "k", "f", "v");
    EXPECT_EQ(call(10, {}, {Exception, String}), replied(10, 0, "0,null"));
    EXPECT_FALSE(collector.getData()["pkg"].isNull()) << "kept while switched off";
}

TEST_F(KelvoServiceTest, reloadsThreeSecondsLater) {
    start(model("front", 0, "skin"));
    call(11, {}, {}, 10050);
    EXPECT_TRUE(log.has("PERMISSION_DENIED: uid(10050)_pid(" + std::to_string(getpid()) +
                        ") try to reload config"));
    phone().tree().setNode(sim::kMainConfigPath,
                           common::encryptConfig(json("{'temp_threshold_down':[],"
                                                      "'thermal_status_model':{'temp_threshold':"
                                                      "[30,25]}}")));
    call(11, {}, {});
    runUntil(2.999);
    EXPECT_FALSE(log.has("Reload global config"));
    runUntil(3);
    EXPECT_EQ(log.count("Reload global config"), 1u);
    EXPECT_TRUE(log.has("config[i-1] i=1, value=30")) << "the new thresholds are read";
}

TEST_F(KelvoServiceTest, postsScenesOfLampAndFold) {
    start(model("front", 0, "skin"));
    call(24, {2}, {});
    EXPECT_TRUE(log.has("start load screen_fold fitting model"));
    call(24, {1}, {});
    EXPECT_TRUE(log.has("Can't find op scene, code:0"));
    call(19, {1}, {});
    EXPECT_TRUE(log.has("sendThrottlingDelayMessage"));
    call(12, {0}, {});
    EXPECT_TRUE(log.has("Update state foreground package: SCREEN.OFF"));
    call(18, {std::string("com.app")}, {});
    EXPECT_TRUE(log.has("Kelvo daemon current package: pkg=com.app"));
}
