#include <android/log.h>
#include <signal.h>
#include <unistd.h>

#include "base/Log.h"
#include "base/Version.h"
#include "core/KelvoMain.h"

int main() {
    // liblog would drop debug lines that the daemon's own level lets through.
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    signal(SIGPIPE, SIG_IGN);  // a reader of a dump may be gone
    signal(SIGXFSZ, SIG_IGN);  // a file that must not grow costs its lines, not the daemon
    KLOGD("kelvo version:(android:%d)", kelvo::kAndroidApiLevel);
    if (!kelvo::isKelvoEnabled()) {
        KLOGE("kelvo is not enabled\n");
        return -1;
    }
    kelvo::kelvo_main(nullptr);
    // The daemon never ends in success: it runs until it is killed. Its threads run on meanwhile,
    // so no static object may be destroyed under them.
    _exit(-1);
}
