#pragma once

/** Sizes of system properties as Android has them; both count the terminating zero. */
#define PROP_NAME_MAX 32   // only the size of old callers' buffers: names may be longer
#define PROP_VALUE_MAX 92  // values of "ro." properties may be longer, all others may not
