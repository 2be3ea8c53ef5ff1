#pragma once

#include <binder/Status.h>

namespace servicemanager {

/** An exception for the caller, and why. */
inline android::binder::Status refusal(int32_t exception, const char* reason) {
    return android::binder::Status::fromExceptionCode(exception, reason);
}

}  // namespace servicemanager
