#include "ProtocolTest.h"

#include <android-base/unique_fd.h>
#include <binder/IPCThreadState.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "support/Files.h"

namespace android {

namespace {

std::atomic<int32_t> gLiveObjects = 0;

struct Counted : BBinder {
    Counted() { ++gLiveObjects; }
    ~Counted() override { --gLiveObjects; }
};

/** Replies a pipe in which one byte of each descriptor is. */
status_t gatherFds(const Parcel& in, Parcel* out) {
    base::unique_fd end, start;
    bool good = base::Pipe(&end, &start);
    for (int32_t left = in.readInt32(); left > 0; --left) {
        char byte = '?';
        good = read(in.readFileDescriptor(), &byte, 1) == 1 && write(start.get(), &byte, 1) == 1 &&
               good;
    }
    return good ? out->writeFileDescriptor(end.release(), true) : UNKNOWN_ERROR;
}

class TestService : public BBinder {
  public:
    explicit TestService(RoleLink& link) : mLink(link) {}

  private:
    status_t onTransact(uint32_t code, const Parcel& in, Parcel* out, uint32_t flags) override {
        switch (code) {
            case kAdd:
                return out->writeInt32(in.readInt32() + in.readInt32());
            case kFail:
                return in.readInt32();
            case kNewObject:
                return out->writeStrongBinder(new Counted);
            case kLiveCount:
                return out->writeInt32(gLiveObjects);
            case kGatherFds:
                return gatherFds(in, out);
            case kFdCount:
                return out->writeInt32(openDescriptors());
            case kWho:
                out->writeInt32(IPCThreadState::self()->getCallingPid());
                return out->writeUint32(IPCThreadState::self()->getCallingUid());
            case kBytes:
                return out->writeByteVector(std::vector<int8_t>(in.readUint32(), 7));
            default:
                return onShared(code, in, out, flags);
        }
    }

    status_t onShared(uint32_t code, const Parcel& in, Parcel* out, uint32_t flags) {
        std::unique_lock lock(mLock);
        switch (code) {
            case kRecord:
                mRecords.push_back(in.readInt32());
                break;
            case kRecorded: {
                const size_t count = in.readUint32();
                mChanged.wait_for(lock, std::chrono::milliseconds(kBinderWorldLimitMs),
                                  [&] { return mRecords.size() >= count; });
                return out->writeInt32Vector(mRecords);
            }
            case kKeep:
                return in.readNullableStrongBinder(&mKept);
            case kKept:
                return out->writeStrongBinder(mKept);
            case kBlock:
                mLink.send("blocked " + std::to_string(++mBlocked));
                mChanged.wait(lock, [&] { return mReleased; });
                --mBlocked;
                break;
            case kRelease:
                mReleased = true;
                break;
            default:
                return BBinder::onTransact(code, in, out, flags);
        }
        mChanged.notify_all();
        return OK;
    }

    RoleLink& mLink;
    std::mutex mLock;  // guards what follows; no other process is called while it is held
    std::condition_variable mChanged;
    std::vector<int32_t> mRecords;
    sp<IBinder> mKept;
    int mBlocked = 0;
    bool mReleased = false;
};

}  // namespace

int32_t openDescriptors() {
    return static_cast<int32_t>(countEntries("/proc/self/fd"));
}

sp<BBinder> makeTestService(RoleLink& link) {
    return new TestService(link);
}

}  // namespace android
