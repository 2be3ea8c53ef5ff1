#pragma once

#include <HubClient.h>
#include <HubSocket.h>
#include <android-base/unique_fd.h>
#include <utils/Errors.h>

#include "BinderProtocol.h"
#include "HubDriverWriter.h"

namespace android {

/**
 * A thread's connection to the hub. Used by that thread only; closing it takes back what the thread
 * asked for.
 */
class HubDriverChannel {
  public:
    /** `process` is told when the hub is gone or cannot be understood, and must live longer. */
    HubDriverChannel(base::unique_fd socket, binderhub::HubClient& process)
          : mSocket(std::move(socket)), mProcess(process) {}

    /** As BinderDriver::writeRead(). */
    status_t writeRead(binder_write_read* exchange, bool readsNext);

    /** Asks for returns, unless that is done, so that descriptor() becomes readable. */
    status_t awaitReturns();

    int descriptor() const { return mSocket.get(); }

  private:
    status_t write(binder_write_read* exchange, bool wantsReturns);
    status_t send(bool wantsReturns);
    status_t read(binder_write_read* exchange);
    status_t giveUnreadBack();
    status_t hubGone();

    const base::unique_fd mSocket;
    binderhub::HubClient& mProcess;
    HubDriverWriter mWriter;
    binderhub::Receiver mReceiver;
    binderhub::InMessage mReceived;
    bool mWaits = false;  // the hub owes this thread returns
};

}  // namespace android
