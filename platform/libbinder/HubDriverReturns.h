#pragma once

#include <HubSocket.h>
#include <utils/Errors.h>

#include "BinderProtocol.h"

namespace android {

/**
 * Puts the BR_ returns of the hub's message into the read buffer of `exchange`. The data of a
 * transaction or reply goes to memory of its own, which BC_FREE_BUFFER frees; its descriptors
 * belong to the receiver from then on.
 *
 * When the message's descriptors were lost, a reply becomes BR_FAILED_REPLY and `unread` tells that
 * its buffer is to be given back; in a transaction -1 stands in their place, and what came in a
 * file is empty.
 *
 * Returns -EPROTO for a message that the hub never sends, -ENOMEM; then nothing was taken.
 */
status_t deliverReturns(binderhub::InMessage* message, binder_write_read* exchange, bool* unread);

}  // namespace android
