#pragma once

#include <android-base/unique_fd.h>

#include <cstddef>
#include <memory>

#include "ForkedProcess.h"

namespace bench {

/**
 * What a call through a third process costs at least: this process sends a datagram to a relay,
 * which waits for its two sockets with epoll and passes it on to an echo; the answer comes back the
 * same way. Four datagrams, as long as those of a small binder call. Used on one thread.
 */
class RelayFloor {
  public:
    /** Starts relay and echo. Throws std::system_error. */
    RelayFloor();

    /** One question and its answer; false when one of the two is gone. */
    bool roundTrip() const;

    static constexpr size_t kQuestionSize = 192;  // bytes: header, BC_TRANSACTION, token and an int
    static constexpr size_t kAnswerSize = 136;    // bytes: header, free and reply, two ints

  private:
    android::base::unique_fd mSocket;
    std::unique_ptr<ForkedProcess> mRelay;
    std::unique_ptr<ForkedProcess> mEcho;
};

}  // namespace bench
