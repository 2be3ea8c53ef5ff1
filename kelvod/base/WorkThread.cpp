#include "base/WorkThread.h"

#include <pthread.h>

#include "base/Log.h"

namespace kelvo {

int startWorkThread(void* (*body)(void*)) {
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, body, nullptr);
    if (error == 0) {
        pthread_setname_np(thread, "work");
        pthread_detach(thread);
    }
    return error;
}

void pollForever(const android::sp<android::Looper>& looper) {
    while (true) {
        looper->pollAll(-1);
        KLOGD("MessageManager loop once");
    }
}

}  // namespace kelvo
