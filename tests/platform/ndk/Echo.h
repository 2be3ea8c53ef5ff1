#pragma once

#include <aidl/ndktest/BnEcho.h>
#include <aidl/ndktest/BpEcho.h>
#include <fcntl.h>
#include <unistd.h>

#include <future>
#include <vector>

/** Gives back what it is given. */
struct Echo : aidl::ndktest::BnEcho {
    using Record = aidl::ndktest::Record;
    using Records = std::vector<Record>;
    using Status = ndk::ScopedAStatus;

    static Status failure(int how) {
        return how == 1   ? Status::fromExceptionCodeWithMessage(EX_ILLEGAL_STATE, "not now")
               : how == 2 ? Status::fromServiceSpecificErrorWithMessage(-7, "seven")
               : how == 3 ? Status::fromStatus(STATUS_PERMISSION_DENIED)
                          : Status::ok();
    }

    Status records(const Records& a, Records* b, Records* c, Records* result) override {
        outLength = b->size();
        *b = *c;
        *c = *result = a;
        return Status::ok();
    }
    Status file(const ndk::ScopedFileDescriptor& a, ndk::ScopedFileDescriptor* result) override {
        result->set(a.get() < 0 ? -1 : fcntl(a.get(), F_DUPFD_CLOEXEC, 0));
        return Status::ok();
    }
    Status fail(int how) override {
        failedOn = gettid();
        return failure(how);
    }
    Status note(int value) override {
        noted.set_value(value);
        return Status::ok();
    }
    Status callBack(const std::shared_ptr<IEcho>& back) override {
        back->note(AIBinder_isHandlingTransaction() ? AIBinder_getCallingPid() : 0);
        return back->fail(1);
    }

    size_t outLength = 0;
    pid_t failedOn = 0;
    std::promise<int> noted;
};
