#pragma once

namespace kelvo {

/**
 * Connects the calls that go against the order of the folders. Before anything of the daemon runs;
 * makes no engine, so that each comes to be when it is first needed. Repeating it changes nothing.
 */
void connectEngines();

}  // namespace kelvo
