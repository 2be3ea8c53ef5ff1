#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <android-base/unique_fd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "BinderDriver.h"

namespace android {

namespace {

/** Space for what is received; what the driver has mapped is only ever read here. */
size_t mappedBytes() {
    constexpr size_t kBytes = 1024 * 1024;
    // With guard pages at both ends the whole takes an even megabyte.
    return kBytes - 2 * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

/** Thread-safe: the driver itself finds the thread that calls. */
class KernelDriver : public BinderDriver {
  public:
    KernelDriver(std::string device, base::unique_fd fd, void* mapped)
          : mDevice(std::move(device)), mFd(std::move(fd)), mMapped(mapped) {}

    ~KernelDriver() override { munmap(mMapped, mappedBytes()); }

    status_t writeRead(binder_write_read* exchange, bool) override {
        return control(BINDER_WRITE_READ, exchange);
    }

    status_t setMaxThreads(uint32_t count) override {
        return control(BINDER_SET_MAX_THREADS, &count);
    }

    status_t becomeContextManager(const flat_binder_object& object) override {
        flat_binder_object copy = object;
        const status_t status = control(BINDER_SET_CONTEXT_MGR_EXT, &copy);
        if (status != -EINVAL) {
            return status;
        }
        int32_t unused = 0;  // older drivers know the command without an object
        return control(BINDER_SET_CONTEXT_MGR, &unused);
    }

    ssize_t strongReferences(uint32_t handle) override {
        binder_node_info_for_ref info = {};
        info.handle = handle;
        const status_t status = control(BINDER_GET_NODE_INFO_FOR_REF, &info);
        return status != OK ? status : static_cast<ssize_t>(info.strong_count);
    }

    void exitThread() override {
        int32_t unused = 0;
        control(BINDER_THREAD_EXIT, &unused);
    }

    int pollDescriptor() override { return mFd.get(); }

    std::string name() const override { return mDevice; }

  private:
    status_t control(unsigned long request, void* argument) const {
        return ioctl(mFd.get(), request, argument) < 0 ? -errno : OK;
    }

    const std::string mDevice;
    const base::unique_fd mFd;
    void* const mMapped;
};

}  // namespace

std::unique_ptr<BinderDriver> openKernelDriver(const std::string& device, std::string* error) {
    base::unique_fd fd(open(device.c_str(), O_RDWR | O_CLOEXEC));
    if (fd.get() < 0) {
        *error = "cannot open " + device + ": " + strerror(errno);
        return nullptr;
    }
    binder_version version = {};
    if (ioctl(fd.get(), BINDER_VERSION, &version) < 0) {
        *error = device + " is no binder device: " + strerror(errno);
        return nullptr;
    }
    if (version.protocol_version != BINDER_CURRENT_PROTOCOL_VERSION) {
        *error = device + " has binder protocol " + std::to_string(version.protocol_version) +
                 ", not " + std::to_string(BINDER_CURRENT_PROTOCOL_VERSION);
        return nullptr;
    }
    void* mapped =
            mmap(nullptr, mappedBytes(), PROT_READ, MAP_PRIVATE | MAP_NORESERVE, fd.get(), 0);
    if (mapped == MAP_FAILED) {
        *error = "cannot map memory of " + device + ": " + strerror(errno);
        return nullptr;
    }
    return std::make_unique<KernelDriver>(device, std::move(fd), mapped);
}

}  // namespace android
