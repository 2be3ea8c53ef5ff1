// Logs one line of each kind and prints what came through, for LogTest.

#include <android/log.h>
#include <stdio.h>

#include "core/Log.h"

namespace {

void print(const __android_logger_data* data, const char* message) {
    printf("%d %s %s\n", data->priority, data->tag, message);
}

int evaluate(int* count) {
    return ++*count;
}

}  // namespace

int main() {
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger(print);
    int count = 0;
    KLOGD("debug %d", evaluate(&count));
    KLOGI("info %d", evaluate(&count));
    KLOGE("error %d", evaluate(&count));
    printf("evaluated %d\n", count);
    return 0;
}
