#pragma once

#include <android-base/unique_fd.h>

/** The hub's own descriptors: some are kept free for messages that come in. */
namespace binderhub {

/** Raises the limit of descriptors as far as it goes, and reads it. Called once, at start. */
void raiseDescriptorLimit();

/** Whether a new descriptor leaves enough free ones, so that it may be kept. */
bool isAffordable(int descriptor);

/** A copy; -1 when there are too few descriptors left. */
android::base::unique_fd duplicate(int descriptor);

}  // namespace binderhub
