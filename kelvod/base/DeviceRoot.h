#pragma once

#include <string>

namespace kelvo {

/**
 * The folder that stands for the phone's "/": the environment variable KELVO_ROOT, read once, or
 * nothing on a phone, where init sets no such variable.
 */
const std::string& deviceRoot();

}  // namespace kelvo
