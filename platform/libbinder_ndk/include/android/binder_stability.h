#pragma once

#include <android/binder_ibinder.h>

__BEGIN_DECLS

/**
 * Says that a local binder's interface is as stable as that between system and vendor: its service
 * must be an entry of the device's manifest. Before the binder is sent anywhere: without a mark it
 * is of the compilation unit when it is first sent, and another mark ends the process.
 */
void AIBinder_markVintfStability(AIBinder* binder);

__END_DECLS
