#pragma once

#include <utils/Looper.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>
#include <utils/StrongPointer.h>

#include <atomic>

#include "core/KelvoMessage.h"
#include "core/SceneMachine.h"

namespace kelvo {

/** Carries one request through the looper to the message manager. */
class MessageHandle : public android::MessageHandler {
  public:
    explicit MessageHandle(const KelvoMessage& message) : mMessage(message) {}
    /** The looper's message only says which code it is; the request is the one held. */
    void handleMessage(const android::Message&) override;

  private:
    const KelvoMessage mMessage;
};

/**
 * The message loop: whatever must not run on a caller's thread is posted here and handled one
 * message at a time on the thread "work". Also owns the scene state machine.
 *
 * The sending methods are thread-safe and never wait; joinLoop() and handleMessage() belong to the
 * work thread.
 */
class MessageManager : public android::Singleton<MessageManager>, private SceneMachine::Actions {
  public:
    /** Handles messages for ever, but where pollForever() hands the looper to a scheduler. */
    void joinLoop();

    /** Messages that may wait when one comes from outside. */
    static constexpr int32_t kMostWaiting = 1024;
    /** The daemon's own find room besides, for as many listeners as can die at once and more. */
    static constexpr int32_t kMostWaitingInside = 2 * kMostWaiting + 4096;

    /** 0, or -1 when too many wait and the message is dropped. */
    int sendMessage(const KelvoMessage& message);
    int sendMessageDelayed(const KelvoMessage& message, int delayMs);
    /** Whether a call from outside may still post a message; a line says when that ends. */
    bool hasRoom();
    /** Posts the flash scene (code 8); one that is pending already stays. */
    int sendThrottlingDelayMessage(int delayMs);
    /** Drops all pending flash scenes and nothing else. */
    int removeThrottlingDelayMessage();

    void handleMessage(const KelvoMessage& message);

  private:
    friend class android::Singleton<MessageManager>;
    MessageManager();
    ~MessageManager() override = default;

    class WaitingMessage;

    bool takePlace();
    void leavePlace();
    void dispatch(const KelvoMessage& message);
    bool applyToScenes(const KelvoMessage& message);

    bool switchScene(const std::string& scene) override;
    void scheduleFlash(int delayMs) override;
    void cancelFlash() override;

    const android::sp<android::Looper> mLooper;
    std::atomic<int32_t> mWaiting = 0;
    std::atomic<bool> mIsFull = false;  // as said last
    const android::sp<MessageHandle> mThrottlingHandler;
    // Guards the scenes, held while they change. Taken before the looper's own lock and the fitting
    // engine's main mutex.
    android::Mutex mMutex;
    SceneMachine mScenes GUARDED_BY(mMutex);
};

}  // namespace kelvo
