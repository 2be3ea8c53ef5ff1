#pragma once

namespace kelvo {

/** True when "persist.sys.kelvo.enable" is exactly "1" or "2"; its default is "0". */
bool isKelvoEnabled();

/**
 * Starts the daemon: registers the service "kelvo", starts the message loop and initialises the
 * engines, and returns once everything runs. `resp` is only logged. 0, or -1 when the daemon is
 * disabled or cannot register its service or start its thread. Once in a process.
 */
int kelvo_start(void* resp);

/**
 * The daemon's body: kelvo_start() and then the calling thread serves binder calls. -1 when the
 * start failed, 0 in the unexpected case that the binder pool gives the thread back.
 */
int kelvo_main(void* resp);

}  // namespace kelvo
