#include "sim/process/BinderPlatform.h"

#include <android-base/unique_fd.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <system_error>

#include "HubSocket.h"
#include "sim/process/ServeWait.h"

namespace sim {

namespace {

using android::base::unique_fd;

constexpr int kLookMs = 1;  // between two looks at the hub's socket

constexpr char kHub[] = "binderhub";
constexpr char kServiceManager[] = "servicemanager";

/** Whether the writer of this pipe sends something before it ends and within the limit. */
bool becomesReadable(int fd, const ServeWait& wait) {
    pollfd entry{fd, POLLIN, 0};
    char byte = 0;
    return poll(&entry, 1, wait.leftMs()) == 1 && read(fd, &byte, 1) == 1;
}

/**
 * Whether programs that are started now choose the kernel's driver: as KELVO_BINDER says, else
 * when /dev/binder opens.
 */
bool usesKernelDriver() {
    const char* const choice = getenv("KELVO_BINDER");
    if (choice != nullptr && *choice != '\0') {
        return std::string(choice) == "kernel";
    }
    return unique_fd(open("/dev/binder", O_RDWR | O_CLOEXEC)) >= 0;
}

}  // namespace

BinderPlatform::BinderPlatform(const std::string& programs, const std::string& root,
                               const std::string& logs)
      : mPrograms(programs), mRoot(root), mLogs(logs) {
    if (!usesKernelDriver()) {
        startHub();
    }
    startServiceManager();
    setenv("KELVO_ROOT", root.c_str(), 1);
}

BinderPlatform::~BinderPlatform() {
    mServiceManager.reset();
    if (mHub != nullptr) {
        mHub.reset();
        unlink(hubSocket().c_str());
    }
}

void BinderPlatform::startHub() {
    mkdir((mRoot + "/dev").c_str(), 0755);
    const ServeWait wait;
    mHub = std::make_unique<PhoneProcess>(
            std::vector<std::string>{mPrograms + "/" + kHub, "--socket", hubSocket()}, mRoot,
            logPath(kHub));
    while (binderhub::connectTo(hubSocket()) < 0) {
        if (mHub->ending() || wait.isOver()) {
            wait.refuse(kHub, *mHub, logPath(kHub));
        }
        poll(nullptr, 0, kLookMs);
    }
}

void BinderPlatform::startServiceManager() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const unique_fd reader(ends[0]);
    unique_fd writer(ends[1]);
    const ServeWait wait;
    mServiceManager = std::make_unique<PhoneProcess>(
            std::vector<std::string>{mPrograms + "/" + kServiceManager}, mRoot,
            logPath(kServiceManager), writer.get());
    writer.reset();
    // It writes one line, when it serves.
    if (!becomesReadable(reader, wait)) {
        wait.refuse(kServiceManager, *mServiceManager, logPath(kServiceManager));
    }
}

std::string BinderPlatform::logPath(const std::string& program) const {
    return mLogs + "/" + program + ".log";
}

std::string BinderPlatform::hubSocket() const {
    return mRoot + "/dev/binderhub";
}

std::optional<ProcessEnding> BinderPlatform::ending() {
    if (const auto how = mHub != nullptr ? mHub->ending() : std::nullopt) {
        return ProcessEnding{kHub, *how, logPath(kHub)};
    }
    if (const auto how = mServiceManager->ending()) {
        return ProcessEnding{kServiceManager, *how, logPath(kServiceManager)};
    }
    return std::nullopt;
}

}  // namespace sim
