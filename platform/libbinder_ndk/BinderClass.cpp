#include "BinderClass.h"

AIBinder_Class* AIBinder_Class_define(const char* interfaceDescriptor,
                                      AIBinder_Class_onCreate onCreate,
                                      AIBinder_Class_onDestroy onDestroy,
                                      AIBinder_Class_onTransact onTransact) {
    if (interfaceDescriptor == nullptr || onCreate == nullptr || onDestroy == nullptr ||
        onTransact == nullptr) {
        return nullptr;
    }
    return new AIBinder_Class{.descriptor = interfaceDescriptor,
                              .wideDescriptor = android::String16(interfaceDescriptor),
                              .onCreate = onCreate,
                              .onDestroy = onDestroy,
                              .onTransact = onTransact};
}

void AIBinder_Class_setOnDump(AIBinder_Class* clazz, AIBinder_onDump onDump) {
    clazz->onDump = onDump;
}
