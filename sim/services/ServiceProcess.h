#pragma once

#include <android-base/unique_fd.h>

#include <functional>
#include <optional>
#include <string>

#include "sim/process/PhoneProcess.h"
#include "sim/services/PhoneService.h"
#include "sim/services/ServiceTable.h"

namespace sim {

/** Tells the process that it knows all values; all other lines to it are actions. */
inline constexpr char kServeCommand[] = "serve";
/** What the process says when its service is registered. */
inline constexpr char kServiceReady[] = "ready";
/** What it says when a client has registered a callback; all other lines of it are events. */
inline constexpr char kServiceClient[] = "client";

/** A service as a process of its own, told what happens line by line. Not thread-safe. */
class ServiceProcess : public PhoneService {
  public:
    /** Where its process is started. */
    struct Place {
        std::string program;
        std::string root;
        std::string logs;  // an existing folder
    };

    /** Returns when the service is registered. Throws std::runtime_error when it does not serve. */
    ServiceProcess(const Place& place, const ServiceKind& kind, const ServiceContext& context);

    void perform(const Deed& deed) override;
    void takeEvents() override;
    /** Readable when events have come, or when the process has ended. */
    int fd() const { return mLink.get(); }
    pid_t pid() const { return mProcess->pid(); }

  private:
    void waitUntilReady(const std::string& name, const std::string& log);
    void handle(const std::string& line);
    bool takeLine(std::string* line);
    void send(std::string line);

    const ServiceContext mContext;
    android::base::unique_fd mLink;
    std::optional<PhoneProcess> mProcess;
    std::string mPending;  // bytes that have come and are not handed over
};

/**
 * The process's own side: registers the service and serves until its input ends. Returns the exit
 * status.
 */
int serveService(const std::string& name);

}  // namespace sim
