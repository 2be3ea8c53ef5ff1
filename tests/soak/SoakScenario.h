#pragma once

#include <json/value.h>

#include <string>

inline constexpr int kReloadsADay = 4;

/**
 * The scenario of an example that lasts a day, with all of it again on each of `days` days, and in
 * every hour what wears a daemon out: a storm of scenes, a service that dies, listeners that come
 * and go, monitoring of heat switched on and off; now and then a reload. Throws sim::ScenarioError.
 */
Json::Value soakScenario(const std::string& example, int days);
