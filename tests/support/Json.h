#pragma once

#include <json/json.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/** A model of weight 1 over one zone, as a member of "temp_model"; single quotes. */
std::string model(const std::string& name, int32_t index, const std::string& zone);
/** A scene with one such model, as a member of "shell_temp_fitting_model". */
std::string scene(const std::string& name, int32_t index, const std::string& zone);
/** The member "ambient_fitting" of a scene: °C are a thousandth of the mean m°C. */
extern const std::string kAmbientFitting;
/** The scene "ambient" with these parameters and models of air and power over one zone. */
std::string ambientScene(const std::string& zone);
/** JSON with single quotes for double ones. */
std::string json(std::string_view text);
/** The value of such a text; throws when it is none. */
Json::Value parsed(std::string_view text);
/** The values of lines of JSON, with double quotes. */
std::vector<Json::Value> parsedLines(const std::string& text);
