#pragma once

#include <linux/android/binder.h>

#include <cstddef>
#include <cstdint>

#include "Buffer.h"
#include "HubSocket.h"
#include "Process.h"
#include "References.h"

namespace binderhub {

/**
 * Turns the objects in a buffer's payload from what they are for the sender into what they are for
 * the buffer's process: a binder of the one is a handle of the other and the reverse.
 */
class Translator {
  public:
    explicit Translator(References& references) : mReferences(references) {}

    /**
     * Translates all objects that the payload's offsets name; their references go to the buffer's
     * process and are listed in the buffer. False when one is not what it must be: out of order, of
     * an unknown type, not the sender's, a descriptor where none is accepted.
     */
    bool translate(Thread& sender, InMessage& message, bool acceptsDescriptors, Buffer& buffer);

    /** Gives up all references that the buffer holds, its target among them. */
    void release(Buffer& buffer);

  private:
    bool translateObject(Thread& sender, InMessage& message, bool acceptsDescriptors,
                         flat_binder_object& object, Buffer& buffer);
    bool translateBinder(Thread& sender, flat_binder_object& object, Buffer& buffer);
    bool translateHandle(Process& sender, flat_binder_object& object, Buffer& buffer);
    bool hold(Node& node, Strength strength, Thread* giver, flat_binder_object& object,
              Buffer& buffer);
    static bool translateDescriptor(InMessage& message, flat_binder_object& object, Buffer& buffer);

    References& mReferences;
};

}  // namespace binderhub
