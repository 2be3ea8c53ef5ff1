#pragma once

#include <android/binder_ibinder.h>

__BEGIN_DECLS

/**
 * Says how long a local binder's interface will stay as it is. Before the binder is sent anywhere,
 * and once: a second, different mark ends the process. Without one a binder is of the compilation
 * unit when it is first sent.
 */
void AIBinder_markCompilationUnitStability(AIBinder* binder);

/** As stable as the interface between system and vendor: an entry of the device's manifest. */
void AIBinder_markVintfStability(AIBinder* binder);

__END_DECLS
