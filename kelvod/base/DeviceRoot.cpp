#include "base/DeviceRoot.h"

#include <stdlib.h>

namespace kelvo {

const std::string& deviceRoot() {
    static const std::string root = [] {
        const char* value = getenv("KELVO_ROOT");
        return std::string(value != nullptr ? value : "");
    }();
    return root;
}

}  // namespace kelvo
