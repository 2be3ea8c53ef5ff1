#include "base/Version.h"

namespace kelvo {

const char kBuildVersion[] = KELVO_BUILD_VERSION;

}  // namespace kelvo
