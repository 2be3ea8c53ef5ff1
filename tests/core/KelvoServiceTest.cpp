#include "service/KelvoService.h"

#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "support/LogCapture.h"

using android::IBinder;
using android::Parcel;
using android::sp;
using android::String16;

TEST(KelvoService, answersStandardRequestsAndRefusesOthers) {
    const sp<IBinder> service = new kelvo::KelvoService();
    Parcel data;
    Parcel reply;
    EXPECT_EQ(service->transact(IBinder::INTERFACE_TRANSACTION, data, &reply), android::OK);
    EXPECT_EQ(reply.readString16(), String16("com.zenta.kelvo.IKelvoService"));
    EXPECT_EQ(service->pingBinder(), android::OK);
    EXPECT_EQ(android::IInterface::asBinder(kelvo::IKelvoService::asInterface(service)), service);

    const LogCapture log;
    EXPECT_EQ(service->transact(3, data, &reply, IBinder::FLAG_ONEWAY),
              android::UNKNOWN_TRANSACTION);
    EXPECT_EQ(log.count(ANDROID_LOG_DEBUG,
                        "got transaction code:3 flags:1 from pid:" + std::to_string(getpid()) +
                                " uid:" + std::to_string(getuid())),
              1u);
}
