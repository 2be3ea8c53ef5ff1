#include <android/binder_libbinder.h>
#include <android/binder_manager.h>
#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>

#include "Echo.h"

namespace {

using ndk::SpAIBinder;

struct NdkBinderTest : testing::Test {
    const std::shared_ptr<Echo> mEcho = ndk::SharedRefBase::make<Echo>();
    const SpAIBinder mBinder = mEcho->asBinder();
};

TEST_F(NdkBinderTest, comesHomeAsItself) {
    android::installLocalServiceManager();
    ASSERT_EQ(EX_NONE, AServiceManager_addService(mBinder.get(), "echo"));
    const SpAIBinder found(AServiceManager_getService("echo"));
    EXPECT_EQ(mBinder, found);
    EXPECT_EQ(mEcho, aidl::ndktest::IEcho::fromBinder(found));
    EXPECT_FALSE(AServiceManager_isDeclared("echo"));
    EXPECT_EQ(nullptr, AServiceManager_checkService("none"));
    EXPECT_EQ(EX_ILLEGAL_ARGUMENT, AServiceManager_addService(mBinder.get(), "no such/ name"));
}

TEST_F(NdkBinderTest, ofTheCppLibraryIsOneWhileItIsHeld) {
    const android::sp<android::IBinder> plain = new android::BBinder;
    const SpAIBinder first(AIBinder_fromPlatformBinder(plain));
    EXPECT_EQ(first, SpAIBinder(AIBinder_fromPlatformBinder(plain)));
    EXPECT_EQ(plain, AIBinder_toPlatformBinder(first.get()));
    EXPECT_EQ(nullptr, aidl::ndktest::IEcho::fromBinder(first)) << "has no such descriptor";
    AParcel* in = nullptr;
    EXPECT_EQ(STATUS_INVALID_OPERATION, AIBinder_prepareTransaction(first.get(), &in));
    EXPECT_EQ(STATUS_OK, AIBinder_setExtension(mBinder.get(), first.get()));
    SpAIBinder extension;
    EXPECT_EQ(STATUS_OK, AIBinder_getExtension(mBinder.get(), extension.getR()));
    EXPECT_EQ(first, extension);
}

TEST_F(NdkBinderTest, keepsItsObjectAndIsMadeAnew) {
    auto echo = ndk::SharedRefBase::make<Echo>();
    const std::weak_ptr<Echo> object = echo;
    SpAIBinder binder = echo->asBinder();
    ndk::ScopedAIBinder_Weak weak(AIBinder_Weak_new(binder.get()));
    EXPECT_EQ(binder, weak.promote());
    binder = nullptr;
    EXPECT_EQ(nullptr, weak.promote());
    binder = echo->asBinder();
    echo.reset();
    EXPECT_FALSE(object.expired());
    binder = nullptr;
    EXPECT_TRUE(object.expired());
}

TEST_F(NdkBinderTest, refusesCallsThatWereNotPrepared) {
    const SpAIBinder other = ndk::SharedRefBase::make<Echo>()->asBinder();
    AIBinder* const mine = mBinder.get();
    const std::tuple<AIBinder*, transaction_code_t, binder_flags_t, binder_status_t> rows[] = {
            {other.get(), FIRST_CALL_TRANSACTION, 0, STATUS_BAD_VALUE},
            {mine, FIRST_CALL_TRANSACTION, 0x10, STATUS_BAD_VALUE},
            {mine, 0, 0, STATUS_UNKNOWN_TRANSACTION},
            {mine, LAST_CALL_TRANSACTION + 1, 0, STATUS_UNKNOWN_TRANSACTION},
            {mine, LAST_CALL_TRANSACTION, 0, STATUS_UNKNOWN_TRANSACTION},
            {mine, FIRST_CALL_TRANSACTION, 0, STATUS_NOT_ENOUGH_DATA},  // no arguments
    };
    for (const auto& [prepared, code, flags, status] : rows) {
        AParcel* in = nullptr;
        ASSERT_EQ(STATUS_OK, AIBinder_prepareTransaction(prepared, &in));
        AParcel* out = in;
        EXPECT_EQ(status, AIBinder_transact(mine, code, &in, &out, flags)) << code;
        EXPECT_EQ(nullptr, in);
        EXPECT_EQ(nullptr, out);
    }
    const android::Parcel noHeader;
    EXPECT_EQ(STATUS_BAD_TYPE,
              AIBinder_toPlatformBinder(mine)->transact(FIRST_CALL_TRANSACTION, noHeader, nullptr));
}

}  // namespace
