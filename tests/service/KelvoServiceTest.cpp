#include "service/KelvoService.h"

#include <binder/IServiceManager.h>

#include "support/EngineTest.h"

namespace {

// What replies hold and who is refused stands in the replayed scenarios.
class KelvoServiceTest : public EngineTest {
  protected:
    KelvoServiceTest() {
        addZone("skin", 40000);
        setScenes(scene("default", 0, "skin"));
        startPhone();
        runUntil(0);
    }
};

}  // namespace

TEST_F(KelvoServiceTest, saysWhatItIsTold) {
    const std::string text = "1,2";
    const std::string refusal = "PERMISSION_DENIED: uid(10050)_pid(" + std::to_string(getpid()) +
                                ") try to reload config";
    // code, argument, uid, priority, line
    const std::tuple<uint32_t, sim::Argument, uint32_t, int, std::string> rows[] = {
            {4, 0, 10050, ANDROID_LOG_INFO, "Get thermal status: -1"},
            {5, 0, 0, ANDROID_LOG_ERROR, "thermalHold:0, thermalHoldDown:0, thermalStatus:0"},
            {11, 0, 10050, ANDROID_LOG_DEBUG, refusal},
            {12, 0, 1000, ANDROID_LOG_INFO, "Update state foreground package: SCREEN.OFF"},
            {12, 3, 1000, ANDROID_LOG_DEBUG, "Kelvo screen status: 3"},
            {15, 0, 10050, ANDROID_LOG_DEBUG, "no permission to call this"},
            {18, "com.app", 0, ANDROID_LOG_DEBUG, "Kelvo daemon current package: pkg=com.app"},
            {19, 1, 1000, ANDROID_LOG_ERROR, "light lamp status: 1"},
            {24, 2, 1000, ANDROID_LOG_ERROR, "screen fold status: 2"},
            {103, text, 1000, ANDROID_LOG_ERROR, "Kelvo daemon wifiInfo=1,2"},
            {104, text, 1000, ANDROID_LOG_ERROR, "Kelvo daemon networkInfo=1,2"},
            {105, text, 1000, ANDROID_LOG_ERROR, "Kelvo daemon networkSpeedInfo=1,2"},
    };
    for (const auto& [code, argument, uid, priority, line] : rows) {
        log.clear();
        phone().perform(sim::Transact{code, {argument}, {}, uid});
        EXPECT_EQ(log.count(priority, line), 1u) << line;
    }
}

TEST_F(KelvoServiceTest, wantsItsToken) {
    const auto service = android::defaultServiceManager()->checkService(android::String16("kelvo"));
    android::Parcel data;
    data.writeInterfaceToken(android::String16("com.zenta.kelvo.IOther"));
    for (const uint32_t code : {1u, 11u, 17u, 21u, 106u}) {
        android::Parcel reply;
        EXPECT_EQ(service->transact(code, data, &reply), android::PERMISSION_DENIED);
        EXPECT_EQ(reply.dataSize(), 0u);
    }
    EXPECT_TRUE(log.has("currentTemp=40.000000\n")) << "said before the token is looked at";
    android::Parcel good;
    good.writeInterfaceToken(service->getInterfaceDescriptor());
    EXPECT_EQ(service->transact(4, good, nullptr), android::OK) << "no reply wanted";
}
