#pragma once

#include <android/binder_ibinder.h>
#include <utils/String16.h>

#include <string>

/** See AIBinder_Class_define. Constant once its first binder is made, and so thread-safe. */
struct AIBinder_Class {
    std::string descriptor;
    android::String16 wideDescriptor;  // the same, as it travels
    AIBinder_Class_onCreate onCreate;
    AIBinder_Class_onDestroy onDestroy;
    AIBinder_Class_onTransact onTransact;
    AIBinder_onDump onDump = nullptr;
};
