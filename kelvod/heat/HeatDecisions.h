#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Why each value is what it is, for a DecisionObserver.

namespace kelvo {

/** One reading of a heat component. */
struct HeatSample {
    int32_t component = 0;                   // ComponentType
    int32_t value = 0;                       // mW or mA; m°C of the ambient component
    std::string source;                      // "usage feed", "task statistics", …
    std::map<std::string, int64_t> figures;  // that the value was computed from
};

/** How samples became a contribution. */
struct HeatConversion {
    enum class Method {
        NONE,        // no sample was ever converted
        REMEMBERED,  // fewer than five samples: the last result stands
        MEAN,        // mean of the samples over the coefficient
        AMBIENT,     // change against the latest extreme
    };
    struct Reading {
        int32_t time = 0;   // monotonic, s
        int32_t value = 0;  // as in HeatSample
    };

    Method method = Method::NONE;
    float coefficient = 0;         // mW or mA for 1 m°C; 0 for the ambient component
    std::vector<Reading> samples;  // that counted, newest first
    int32_t result = -1;           // m°C
};

/** A question which component heats the phone. */
struct HeatRanking {
    enum class Question { MAIN, TEXT, DETAIL };
    struct Contribution {
        int32_t component = 0;  // ComponentType
        int32_t heat = 0;       // m°C
        HeatConversion conversion;
        std::map<std::string, int> keyFactors;  // of a detailed report
    };

    Question question = Question::MAIN;
    std::vector<Contribution> contributions;  // ascending by component
    int32_t mainComponent = -1;               // of the most heat; -1: nothing heats
};

}  // namespace kelvo
