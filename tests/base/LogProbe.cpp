// Logs one line of each kind and prints what came through, for LogTest.

#include <stdio.h>

#include "base/Log.h"

int main() {
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger([](const __android_logger_data* data, const char* message) {
        printf("%d %s %s\n", data->priority, data->tag, message);
    });
    int count = 0;
    KLOGD("debug %d", ++count);
    KLOGI("info %d", ++count);
    KLOGE("error %d", ++count);
    printf("evaluated %d\n", count);
    return 0;
}
