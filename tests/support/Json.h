#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/** A model of weight 1 over one zone, as a member of "temp_model"; single quotes. */
std::string model(const std::string& name, int32_t index, const std::string& zone);
/** A scene with one such model, as a member of "shell_temp_fitting_model". */
std::string scene(const std::string& name, int32_t index, const std::string& zone);
/** JSON with single quotes for double ones. */
std::string json(std::string_view text);
