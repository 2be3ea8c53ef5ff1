#pragma once

#include <binder/Parcel.h>
#include <utils/String8.h>

#include <string>

namespace kelvo {

/** The next string of a request, as UTF-8; empty when there is none. */
inline std::string readText(const android::Parcel& data) {
    const android::String8 text(data.readString16());
    return {text.string(), text.size()};
}

}  // namespace kelvo
