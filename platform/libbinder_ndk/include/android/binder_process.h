#pragma once

#include <stdbool.h>
#include <stdint.h>
#include <sys/cdefs.h>

__BEGIN_DECLS

/** Starts the threads that carry out calls to this process; more than once is fine. */
void ABinderProcess_startThreadPool(void);

/**
 * How many threads the driver may ask for beyond those that are started or join. Before
 * startThreadPool. False when there is no driver that could be told.
 */
bool ABinderProcess_setThreadPoolMaxThreadCount(uint32_t numThreads);

/** The calling thread carries out calls for the rest of its life. */
void ABinderProcess_joinThreadPool(void);

__END_DECLS
