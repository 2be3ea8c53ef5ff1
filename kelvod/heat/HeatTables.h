#pragma once

#include <json/value.h>

#include <optional>
#include <string>
#include <vector>

#include "shelltemp/ZoneTable.h"

// The tables in the configuration's part "heatsource_detection", for the components that use them
// and for whoever checks a configuration. Pure.

namespace kelvo {

/** What is wrong with a table, and where in its section. */
struct HeatTableFault {
    enum class Kind {
        NO_COLUMN,      // `key` is missing
        NO_ARRAY,       // `key` is no array
        UNEQUAL,        // `key` has not the `length` of the first column
        NO_NUMBER,      // `key`[element] is 0 or no number
        NO_TEXT,        // `key`[element] is no text
        UNKNOWN_ZONE,   // `key`[element] is no zone of the phone; nothing after it counts
        TOO_FEW_ZONES,  // `key` names fewer than two
    };
    Kind kind = Kind::NO_COLUMN;
    const char* key = "";
    Json::ArrayIndex element = 0;
    Json::ArrayIndex length = 0;
};

/** A table by rows. What a fault means for the rows before it is up to the component. */
template <typename Row>
struct HeatTable {
    bool hasColumns = false;             // all are there, as arrays
    std::vector<Row> rows;               // before the first that cannot be used; none if unequal
    std::optional<Row> badRow;           // that one, as far as it can be read
    std::vector<HeatTableFault> faults;  // of bad entries the first of each column
};

/** A figure of "heatsource_model" (mW or mA per m°C) or of "brightness_model". */
struct NamedFigure {
    std::string name;  // in a bad row also of a number, as text
    float value = 0.0F;
};

/** What the graphics processor draws at a clock. */
struct GpuCurrent {
    float gpufreq = 0.0F;  // in the unit of the clock node: MHz, or as MediaTek's node has it
    float powermA = 0.0F;  // mA at full load
};

/** What the modem draws at a strength of the signal. */
struct ModemCurrent {
    float rsrp = 0.0F;       // dBm
    float current4G = 0.0F;  // mA
    float current5G = 0.0F;  // mA
};

HeatTable<NamedFigure> parseHeatModel(const Json::Value& model);
HeatTable<NamedFigure> parseBrightnessModel(const Json::Value& model);
HeatTable<GpuCurrent> parseGpuModel(const Json::Value& model);
HeatTable<ModemCurrent> parseModemModel(const Json::Value& model);

/** The two zones that tell how much warmer the modem's power amplifier is. */
struct ModemZones {
    struct Pair {
        ThermalZone amplifier;
        ThermalZone base;
    };
    std::optional<Pair> zones;  // the first two that are known
    std::optional<HeatTableFault> fault;
};

/** `known` is what the phone has of the zones that `model` lists. */
ModemZones chooseModemZones(const Json::Value& model, const ZoneList& known);

/** A number of a table; 0, which is valid in none, for anything else. */
float heatNumber(const Json::Value& value);

/** Figures that "brightness_model" can name. */
namespace brightness {

inline constexpr char kStandardNits[] = "el_brt";
inline constexpr char kStandardLevel[] = "el_lvl";
inline constexpr char kStandardPower[] = "el_pwr";  // mW
inline constexpr char kPowerAt60[] = "60_pwr";      // mW, of the driver IC at 60 frames/s
inline constexpr char kPowerAt120[] = "120_pwr";
inline constexpr const char* kNames[] = {kStandardNits, kStandardLevel, kStandardPower, kPowerAt60,
                                         kPowerAt120};

}  // namespace brightness

}  // namespace kelvo
