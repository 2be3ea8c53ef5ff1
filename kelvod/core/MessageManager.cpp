#define ATRACE_TAG ATRACE_TAG_ALWAYS

#include "core/MessageManager.h"

#include <stdio.h>
#include <utils/Timers.h>
#include <utils/Trace.h>

#include "base/Log.h"
#include "base/Time.h"
#include "base/UpCall.h"
#include "base/WorkThread.h"
#include "core/KelvoMessages.h"
#include "core/MessageActions.h"

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::MessageManager)

namespace kelvo {

namespace {

using android::Looper;
using android::Message;

constexpr size_t kTraceNameSize = 128;

nsecs_t millisecondsToNanos(int milliseconds) {
    return ms2ns(nsecs_t{milliseconds});
}

}  // namespace

void MessageHandle::handleMessage(const Message&) {
    MessageManager::getInstance().handleMessage(mMessage);
}

/** A request that counts as waiting until it is handled. */
class MessageManager::WaitingMessage : public MessageHandle {
  public:
    WaitingMessage(const KelvoMessage& message, MessageManager& manager)
          : MessageHandle(message), mManager(manager) {}
    void handleMessage(const Message& what) override {
        mManager.leavePlace();
        MessageHandle::handleMessage(what);
    }

  private:
    MessageManager& mManager;
};

MessageManager::MessageManager()
      : mLooper(new Looper(false)),
        mThrottlingHandler(new MessageHandle(messages::loadFlashScene())),
        mScenes(this) {}

void MessageManager::joinLoop() {
    KLOGI("MessageManager polling!!");
    pollForever(mLooper);
}

bool MessageManager::takePlace() {
    if (++mWaiting <= kMostWaitingInside) {
        return true;
    }
    --mWaiting;
    KLOGE("too many messages wait, one is dropped");
    return false;
}

void MessageManager::leavePlace() {
    // Not as soon as there is room: a flood would fill it each time, and each time have a line.
    if (--mWaiting < kMostWaiting / 2) {
        mIsFull.store(false, std::memory_order_relaxed);
    }
}

bool MessageManager::hasRoom() {
    const bool isFull = mWaiting >= kMostWaiting;
    if (isFull && !mIsFull.exchange(true)) {
        KLOGE("%d messages wait, calls that post one are refused", kMostWaiting);
    }
    return !isFull;
}

int MessageManager::sendMessage(const KelvoMessage& message) {
    return sendMessageDelayed(message, 0);
}

int MessageManager::sendMessageDelayed(const KelvoMessage& message, int delayMs) {
    if (!takePlace()) {
        return -1;
    }
    mLooper->sendMessageDelayed(millisecondsToNanos(delayMs), new WaitingMessage(message, *this),
                                Message(message.what));
    return 0;
}

int MessageManager::sendThrottlingDelayMessage(int delayMs) {
    KLOGD("delay sendThrottlingDelayMessage, delayMs:%d, cur:%d", delayMs, monotonicSeconds());
    mLooper->sendMessageDelayed(millisecondsToNanos(delayMs), mThrottlingHandler,
                                Message(MSG_LOAD_FLASH_SCENE));
    return 0;
}

int MessageManager::removeThrottlingDelayMessage() {
    KLOGD("delay removeDelayMessage");
    mLooper->removeMessages(mThrottlingHandler);
    return 0;
}

void MessageManager::handleMessage(const KelvoMessage& message) {
    KLOGD("MessageManager handling message:%d json:%s", message.what, message.sValue.c_str());
    char name[kTraceNameSize] = {};
    if (ATRACE_ENABLED()) {
        snprintf(name, sizeof(name), "handleMessage:%d", message.what);
    }
    ATRACE_NAME(name);
    ATRACE_NAME("handleMessage");
    dispatch(message);
}

void MessageManager::dispatch(const KelvoMessage& message) {
    if (!applyToScenes(message)) {
        UpCall<MessageActions>::get().perform(message);
    }
}

/** False when the message is not about scenes. */
bool MessageManager::applyToScenes(const KelvoMessage& message) {
    android::Mutex::Autolock lock(mMutex);
    switch (message.what) {
        case MSG_LOAD_FLASH_SCENE:
            mScenes.applyFlash();
            return true;
        case MSG_SCENE_OP_CODE:
            mScenes.applyOpCode(message.iValue);
            return true;
        case MSG_SCREEN_FOLD:
            mScenes.applyFold(message.iValue);
            return true;
        default:
            return false;
    }
}

bool MessageManager::switchScene(const std::string& scene) {
    return UpCall<MessageActions>::get().switchScene(scene);
}

void MessageManager::scheduleFlash(int delayMs) {
    sendThrottlingDelayMessage(delayMs);
}

void MessageManager::cancelFlash() {
    removeThrottlingDelayMessage();
}

}  // namespace kelvo
