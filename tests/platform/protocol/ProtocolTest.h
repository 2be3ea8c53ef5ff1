#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>

#include "support/BinderWorld.h"

namespace android {

/** What the test service does; in → out. */
enum TestCode : uint32_t {
    kAdd = IBinder::FIRST_CALL_TRANSACTION,  // two words → their sum
    kFail,                                   // status, which is returned
    kRecord,                                 // word, any bytes
    kRecorded,                               // count → all words, once that many are there
    kKeep,                                   // binder
    kKept,                                   // → that binder
    kNewObject,                              // → a new binder
    kLiveCount,                              // → how many of those live
    kGatherFds,                              // count, descriptors → a pipe with one byte of each
    kFdCount,  // → how many descriptors the service's process has open
    kBlock,    // until released; tells the role's link how many do
    kRelease,  // lets what blocks go on, now and later
    kWho,      // → calling pid and uid
    kBytes,    // count, bytes → that many bytes
};

sp<BBinder> makeTestService(RoleLink& link);

/** How many this process has open. */
int32_t openDescriptors();

/** A call with words in and out: the first word of the reply is there when it went well. */
struct Answer {
    status_t status;
    int32_t value;
};
Answer ask(const sp<IBinder>& binder, uint32_t code, std::initializer_list<int32_t> words = {},
           uint32_t flags = 0);

/** A call that takes a binder and the binder that is replied; null also when the call failed. */
sp<IBinder> swapBinder(const sp<IBinder>& server, uint32_t code, const sp<IBinder>& binder = {});

/** Asks again until it holds or the limit is over, for what the driver does a little later. */
bool eventually(const std::function<bool()>& holds);

/** A server in another process that runs TestService. */
class ProtocolTest : public testing::Test {
  protected:
    ProtocolTest();
    /** Starts one more; `maxThreads` is for its pool. */
    RoleProcess& startServer(const std::string& name, int maxThreads = 15);

    BinderWorld mWorld;
    RoleProcess& mServerProcess;
    sp<IBinder> mServer;
};

}  // namespace android
