#pragma once

#include <poll.h>
#include <signal.h>

#include <optional>
#include <string>

#include "sim/services/ServiceProcess.h"
#include "support/Await.h"
#include "support/Files.h"

/** A HAL as a process, with what the daemon did to it. */
class Hal {
  public:
    Hal(const std::string& kind, const std::string& root) : mKind(kind), mRoot(root) { start(); }

    void killAndStart() {
        mProcess.reset();
        mClients = 0;
        mLastStatus = -1;
        start();
    }
    pid_t pid() const { return mProcess->pid(); }
    /** It answers nothing any more, until goOn(). */
    void hang() const { ::kill(pid(), SIGSTOP); }
    void goOn() const { ::kill(pid(), SIGCONT); }
    /** Looks for some milliseconds at what has come. */
    void look() {
        pollfd fd{mProcess->fd(), POLLIN, 0};
        poll(&fd, 1, kLookMs);
        mProcess->takeEvents();
    }
    bool awaitClient() {
        return await([this] {
            look();
            return mClients > 0;
        });
    }
    int clients() const { return mClients; }
    int lastStatus() const { return mLastStatus; }
    /** What the HAL answers from now on. */
    void answer(const sim::Deed& deed) {
        mValues.take(deed);
        mProcess->perform(deed);
    }

  private:
    static constexpr int kLookMs = 20;  // a call to a HAL about to die is lost

    void start() {
        mProcess.emplace(sim::ServiceProcess::Place{programPath("phoneservice"), mRoot, mRoot},
                         sim::serviceKind(mKind), mContext);
    }

    const std::string mKind;
    const std::string mRoot;
    sim::ServiceValues mValues;
    int mClients = 0;
    int mLastStatus = -1;
    void onEvent(const sim::Event& event) { mLastStatus = event.members.front().second.asInt(); }
    const sim::ServiceContext mContext{.values = mValues,
                                       .onEvent = [this](const auto& event) { onEvent(event); },
                                       .onClient = [this] { ++mClients; }};
    std::optional<sim::ServiceProcess> mProcess;
};
