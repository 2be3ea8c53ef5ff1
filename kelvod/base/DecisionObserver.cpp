#include "base/DecisionObserver.h"

#include <atomic>

namespace kelvo {

namespace {

std::atomic<DecisionObserver*> sObserver = nullptr;

}  // namespace

DecisionObserver* decisionObserver() {
    return sObserver.load(std::memory_order_acquire);
}

void setDecisionObserver(DecisionObserver* observer) {
    sObserver.store(observer, std::memory_order_release);
}

}  // namespace kelvo
