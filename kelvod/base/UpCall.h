#pragma once

#include <atomic>

namespace kelvo {

/**
 * A call against the order of the folders. A lower folder declares `Interface`, whose own methods
 * say what happens while nothing is connected; the roof connects what performs it before the
 * engines start. The performer is never destroyed. Thread-safe.
 */
template <typename Interface>
class UpCall {
  public:
    static void connect(Interface& performer) { slot().store(&performer); }
    static Interface& get() { return *slot().load(); }

  private:
    static std::atomic<Interface*>& slot() {
        // Not destroyed either: the daemon's threads outlive the static objects. A reference of its
        // own, so that it is no leak once something is connected.
        static Interface& unconnected = *new Interface();
        static std::atomic<Interface*> performer = &unconnected;
        return performer;
    }
};

}  // namespace kelvo
