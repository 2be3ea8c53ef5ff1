#include "ProtocolTest.h"

#include <android-base/file.h>
#include <binder/IPCThreadState.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>

#include "support/Files.h"

namespace android {

namespace {

std::atomic<int32_t> gLiveObjects = 0;

struct Counted : BBinder {
    Counted() { ++gLiveObjects; }
    ~Counted() override { --gLiveObjects; }
};

status_t readFds(const Parcel& in, Parcel* out) {
    std::string bytes;
    for (int32_t left = in.readInt32(); left > 0; --left) {
        char byte = '?';
        if (read(in.readFileDescriptor(), &byte, 1) == 1) {
            bytes.push_back(byte);
        }
    }
    return out->writeUtf8AsUtf16(bytes);
}

status_t writePipe(Parcel* out) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0 || write(ends[1], "hello", 5) != 5) {
        return UNKNOWN_ERROR;
    }
    close(ends[1]);
    return out->writeFileDescriptor(ends[0], true);
}

status_t writeCallers(Parcel* out) {
    IPCThreadState* const thread = IPCThreadState::self();
    const auto writeCaller = [&] {
        out->writeInt32(thread->getCallingPid());
        out->writeInt32(static_cast<int32_t>(thread->getCallingUid()));
    };
    writeCaller();
    const int64_t token = thread->clearCallingIdentity();
    writeCaller();
    thread->restoreCallingIdentity(token);
    writeCaller();
    return OK;
}

class TestService : public BBinder {
  public:
    explicit TestService(RoleLink* link) : mLink(link) {}

    const String16& getInterfaceDescriptor() const override {
        static const String16 kName("kelvo.test.ITestService");
        return kName;
    }

    status_t dump(int fd, const Vector<String16>& args) override {
        std::string text = "args:";
        for (const String16& arg : args) {
            text += " " + std::string(String8(arg).string());
        }
        return base::WriteStringToFd(text, fd) ? OK : UNKNOWN_ERROR;
    }

  private:
    status_t onTransact(uint32_t code, const Parcel& in, Parcel* out, uint32_t flags) override {
        switch (code) {
            case kAdd:
                return out->writeInt32(in.readInt32() + in.readInt32());
            case kFail:
                return in.readInt32();
            case kIsLocal:
                return out->writeBool(in.readStrongBinder()->localBinder() != nullptr);
            case kNewObject:
                return out->writeStrongBinder(new Counted);
            case kLiveCount:
                return out->writeInt32(gLiveObjects);
            case kReadFds:
                return readFds(in, out);
            case kPipe:
                return writePipe(out);
            case kFdCount:
                return out->writeInt32(openDescriptors());
            case kWho:
                return writeCallers(out);
            case kBytes:
                return out->writeByteVector(std::vector<int8_t>(in.readUint32(), 7));
            case kNest:
                return onNest(in);
            default:
                return onShared(code, in, out, flags);
        }
    }

    status_t onNest(const Parcel& in) {
        const sp<IBinder> peer = in.readStrongBinder();
        const int32_t depth = in.readInt32();
        {
            const std::lock_guard lock(mLock);
            mNestThreads.insert(gettid());
        }
        Parcel data;
        data.writeStrongBinder(this);
        data.writeInt32(depth - 1);
        return depth == 0 ? OK : peer->transact(kNest, data, nullptr);
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
            case kNestThread:
                return out->writeInt32(mNestThreads.size() == 1 ? *mNestThreads.begin() : 0);
            case kKeep:
                return in.readNullableStrongBinder(&mKept);
            case kKept:
                return out->writeStrongBinder(mKept);
            case kBlock:
                mLink->send("blocked " + std::to_string(++mBlocked));
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

    RoleLink* const mLink;
    std::mutex mLock;  // guards what follows; no other process is called while it is held
    std::condition_variable mChanged;
    std::vector<int32_t> mRecords;
    std::set<pid_t> mNestThreads;
    sp<IBinder> mKept;
    int mBlocked = 0;
    bool mReleased = false;
};

}  // namespace

int32_t openDescriptors() {
    return static_cast<int32_t>(countEntries("/proc/self/fd"));
}

sp<BBinder> makeTestService(RoleLink* link) {
    return new TestService(link);
}

}  // namespace android
