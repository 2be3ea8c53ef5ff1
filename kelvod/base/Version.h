#pragma once

namespace kelvo {

/** API level of the platform that the daemon is written for. */
inline constexpr int kAndroidApiLevel = 33;

/** Version of this build, given by the build system. Never empty. */
extern const char kBuildVersion[];

}  // namespace kelvo
