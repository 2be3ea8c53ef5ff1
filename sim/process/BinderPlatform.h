#pragma once

#include <memory>
#include <optional>
#include <string>

#include "sim/process/PhoneProcess.h"

namespace sim {

/** A process of the phone that has ended although it should run. */
struct ProcessEnding {
    std::string program;
    std::string ending;  // "status 1", "signal 11"
    std::string log;     // host path
};

/**
 * What the phone's processes talk through: the hub, unless they use the kernel's binder driver, and
 * the service manager, as processes below a device root. They end with this object. Not
 * thread-safe.
 */
class BinderPlatform {
  public:
    /**
     * Starts them and returns when services can be added. The programs are in the folder
     * `programs`, their logs go to `logs`, an existing folder. Throws std::runtime_error when one
     * does not serve. From then on this process has the phone's driver as well.
     */
    BinderPlatform(const std::string& programs, const std::string& root, const std::string& logs);
    ~BinderPlatform();
    BinderPlatform(const BinderPlatform&) = delete;
    BinderPlatform& operator=(const BinderPlatform&) = delete;

    /** The first of them that has ended. */
    std::optional<ProcessEnding> ending();
    /** Processes to be harmed; the hub is 0 on the kernel's driver. */
    pid_t hub() const { return mHub != nullptr ? mHub->pid() : 0; }
    pid_t serviceManager() const { return mServiceManager->pid(); }

  private:
    void startHub();
    void startServiceManager();
    std::string logPath(const std::string& program) const;
    std::string hubSocket() const;

    const std::string mPrograms;
    const std::string mRoot;
    const std::string mLogs;
    std::unique_ptr<PhoneProcess> mHub;  // null on the kernel's driver
    std::unique_ptr<PhoneProcess> mServiceManager;
};

}  // namespace sim
