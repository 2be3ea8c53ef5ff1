#pragma once

#include <json/value.h>

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/DecisionObserver.h"
#include "heat/ComponentType.h"
#include "heat/HeatDecisions.h"
#include "recording/PassLog.h"
#include "recording/RunInfo.h"
#include "recording/Series.h"
#include "shelltemp/FittingPass.h"
#include "thermalstatus/LevelDecision.h"

/** Something that happened at one time and is no figure. */
struct Mark {
    enum class Kind {
        ACTION,    // the scenario's timeline
        PROPERTY,  // the daemon set one
        CALL,      // the daemon called a service, or answered a client
        FAILURE,   // a zone could not be read
    };
    int64_t timeMs = 0;
    Kind kind = Kind::ACTION;
    std::string text;  // on one line
};

/** A call to a listener. */
struct Notification {
    int64_t timeMs = 0;
    std::string listener;
    std::string kind;  // the event's name: "notify_thermal_status"
    std::vector<std::pair<std::string, Json::Value>> values;
};

template <typename T>
struct AtTime {
    int64_t timeMs = 0;
    T what;
};

/** A question about heat with what each component had measured last. */
struct RecordedRanking {
    kelvo::HeatRanking ranking;
    std::map<int32_t, kelvo::HeatSample> samples;  // by ComponentType
};

/** All that a report, a trace or a comparison needs to know of one replay. */
struct Recording {
    RunInfo info;
    std::vector<Series> zones;             // m°C, by index, as the phone has them
    std::map<std::string, Series> models;  // m°C, by name, before the limits
    PassLog passes;                        // outputs and the reasons of all of it
    Series shell{"shell", "m°C"};          // the shell temperature that clients are told
    std::vector<Series> plantNodes;        // m°C; empty without a plant
    Series ambient{"estimate", "m°C"};
    Series trueAmbient{"plant", "m°C"};  // empty without a plant
    std::vector<Series> heat;            // m°C, by ComponentType, as the questions found it
    std::vector<Series> heatSamples;     // mW, mA or m°C, by ComponentType
    Series level{"level", ""};
    Series status{"status", ""};
    Band scene{"scene"};             // whose models the passes evaluate
    Band monitoring{"monitoring"};   // "on" while the components are sampled
    Band heatSource{"heat source"};  // the main one of the latest question
    std::vector<Mark> marks;         // ascending by time, like all lists below
    std::vector<Notification> notifications;
    std::vector<AtTime<kelvo::LevelDecision>> decisions;
    std::vector<AtTime<RecordedRanking>> rankings;
};
