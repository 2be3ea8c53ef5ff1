#pragma once

#include <stdbool.h>
#include <stdint.h>
#include <sys/cdefs.h>

__BEGIN_DECLS

/** Starts the threads that carry out calls to this process; more than once is fine. */
void ABinderProcess_startThreadPool(void);

__END_DECLS
