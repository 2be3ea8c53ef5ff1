#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sim {

/** A figure over time: linear between its points, held before the first and after the last. */
struct Profile {
    struct Point {
        double time;  // s of phone time; two points of one time make a step
        double value;
    };
    std::vector<Point> points;  // at least one, by time
};

/** The ambient as an end of a link. */
inline constexpr int32_t kAmbientNode = -1;

/** Parameters of the RC network. Nodes are numbered by their place in `nodes`. */
struct PlantParams {
    struct Node {
        std::string name;
        double capacity;  // J/K, above 0
        double start;     // °C at t = 0
    };
    struct Link {
        int32_t from;       // node, or kAmbientNode
        int32_t to;         // node, or kAmbientNode
        double resistance;  // K/W, above 0
    };
    struct Source {
        std::string name;
        int32_t node;
        Profile power;  // W of heat
        bool drains;    // its power comes from the battery
    };
    struct Zone {
        int32_t index;  // N of thermal_zoneN
        std::string type;
        int32_t node;
        int32_t offset;      // m°C added to the node's temperature
        int32_t resolution;  // m°C; the value is cut to a multiple of it
        int32_t noise;       // m°C; largest deviation of the repeatable noise
    };
    struct Battery {
        double voltage;  // V
        Profile charge;  // W that flow into the battery
    };
    /** A thread that causes part of a source's power. */
    struct Thread {
        int32_t pid;
        int32_t tid;
        std::string name;
        int32_t source;
        double share;  // of the source's power, 0 to 1
    };
    /** A graphics processor whose clock and load follow the power of its source. */
    struct Gpu {
        struct Level {
            int32_t clock;  // as the clock node's unit has it: MHz, or kHz on a MediaTek phone
            double power;   // W at full load
        };
        int32_t source;
        std::vector<Level> levels;  // at least one, ascending by both
    };

    /** A panel whose backlight level follows the power of its source. */
    struct Backlight {
        int32_t source;
        double dark;      // W up to which the screen is off
        double full;      // W at the highest level, above `dark`
        int32_t maximum;  // the highest level
    };

    int32_t stepMs = 100;  // divides 1000
    Profile ambient;       // °C
    std::vector<Node> nodes;
    std::vector<Link> links;
    std::vector<Source> sources;
    std::vector<Zone> zones;
    std::optional<Battery> battery;
    std::vector<Thread> threads;
    std::optional<Gpu> gpu;
    std::optional<Backlight> backlight;
};

}  // namespace sim
