#include "core/KelvoMain.h"

#include <cutils/properties.h>

#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>

#include "base/Log.h"
#include "base/Version.h"
#include "base/WorkThread.h"
#include "config/PlatformAdaptor.h"
#include "core/Connections.h"
#include "core/MessageManager.h"
#include "service/KelvoService.h"
#include "shelltemp/ShellTempFitting.h"
#include "thermalstatus/KelvoThermalStatus.h"

namespace kelvo {

namespace {

using android::BinderService;
using android::IPCThreadState;
using android::IServiceManager;
using android::ProcessState;
using android::sp;

constexpr char kEnableProperty[] = "persist.sys.kelvo.enable";
constexpr char kIpaZoneProperty[] = "ro.vendor.zenta.ipa.thermalzone";
constexpr size_t kMaxBinderThreads = 8;

void identifyPlatform() {
    const PlatformAdaptor& adaptor = PlatformAdaptor::getInstance();
    if (adaptor.getPlatform() == -1) {
        // An unknown chip costs the overrides of its platform, not the daemon: no exit here.
        KLOGE("kelvo has not support this platform, exit!");
    }
    KLOGE("platform (%s)", adaptor.getPlatformName().c_str());
}

bool registerService(const sp<KelvoService>& service) {
    const android::status_t status = android::defaultServiceManager()->addService(
            android::String16(KelvoService::getServiceName()), service, false,
            IServiceManager::DUMP_FLAG_PRIORITY_DEFAULT);
    if (status != android::OK) {
        KLOGE("add kelvo service failed(%d)", status);
        return false;
    }
    KLOGI("add kelvo service success");
    return true;
}

void* work_thread(void*) {
    KLOGI("work thread is running...");
    MessageManager::getInstance().joinLoop();
    return nullptr;
}

bool startMessageLoop() {
    const int error = startWorkThread(work_thread);
    if (error != 0) {
        KLOGE("create work_thread failed(%d)\n", error);
    }
    return error == 0;
}

void initEngines() {
    KLOGI("kelvo misc init...");
    ShellTempFitting& fitting = ShellTempFitting::getInstance();
    fitting.init();
    KelvoThermalStatus::getInstance().init();
    fitting.openPrjUniqueFeature();
    if (property_get_int32(kIpaZoneProperty, 0) == 0) {
        fitting.initIPA();
    }
    KLOGI("kelvo misc init compeleted!");
}

// `service` gets the object that is registered first.
int start(void* resp, sp<KelvoService>& service) {
    KLOGE("kelvo main start");
    KLOGD("caller provided resp:%p", resp);
    KLOGE("starting kelvo version:%s\n", kBuildVersion);
    if (property_get_int32(kEnableProperty, 0) == 0) {
        KLOGE("kelvo has been disabled!");
        return -1;
    }
    connectEngines();
    identifyPlatform();
    service = new KelvoService();
    if (!registerService(service) || !startMessageLoop()) {
        return -1;
    }
    initEngines();
    ProcessState::self()->setThreadPoolMaxThreadCount(kMaxBinderThreads);
    // A fresh object takes the name over now that the engines are up; clients that came before go
    // on with the first one, which behaves the same.
    BinderService<KelvoService>::publish(false, IServiceManager::DUMP_FLAG_PRIORITY_DEFAULT);
    return 0;
}

void joinBinderPool() {
    const sp<ProcessState> process = ProcessState::self();
    process->startThreadPool();
    process->giveThreadPoolName();
    IPCThreadState::self()->joinThreadPool(true);
}

}  // namespace

bool isKelvoEnabled() {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(kEnableProperty, value, "0");
    return (value[0] == '1' || value[0] == '2') && value[1] == '\0';
}

int kelvo_start(void* resp) {
    sp<KelvoService> service;
    return start(resp, service);
}

int kelvo_main(void* resp) {
    sp<KelvoService> service;  // kept for as long as the daemon runs
    if (start(resp, service) != 0) {
        return -1;
    }
    joinBinderPool();
    KLOGE("binder thread exited!!!");
    return 0;
}

}  // namespace kelvo
