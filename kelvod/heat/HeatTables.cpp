#include "heat/HeatTables.h"

#include <algorithm>
#include <cstddef>

#include "config/ConfigNames.h"
#include "config/ConfigPath.h"

namespace kelvo {

namespace {

using Kind = HeatTableFault::Kind;

constexpr size_t kModemZones = 2;

enum class Entry { NUMBER, TEXT };

struct Column {
    const char* key;
    Entry entry;
    const Json::Value* values = nullptr;  // null: missing
};

bool isUsable(const Json::Value& value, Entry entry) {
    return entry == Entry::TEXT ? value.isString() : heatNumber(value) != 0.0F;
}

/** Arrays of a section that belong together, and what is wrong with them. */
class Columns {
  public:
    Columns(const Json::Value& model, std::vector<Column> columns) : mColumns(std::move(columns)) {
        for (Column& column : mColumns) {
            column.values = findMember(model, column.key);
        }
        findMissing();
        mAreThere = mFaults.empty();
        if (mAreThere) {
            findUnequal();
        }
        if (mFaults.empty()) {
            mLength = mUsable = mColumns.front().values->size();
            findBad(Entry::NUMBER);
            findBad(Entry::TEXT);
        }
    }

    bool areThere() const { return mAreThere; }
    Json::ArrayIndex length() const { return mLength; }
    /** How many rows come before the first bad one. */
    Json::ArrayIndex usable() const { return mUsable; }
    const std::vector<HeatTableFault>& faults() const { return mFaults; }

    float number(size_t column, Json::ArrayIndex row) const {
        return heatNumber((*mColumns[column].values)[row]);
    }
    std::string text(size_t column, Json::ArrayIndex row) const {
        const Json::Value& value = (*mColumns[column].values)[row];
        return value.isConvertibleTo(Json::stringValue) ? value.asString() : "";
    }

  private:
    void findMissing() {
        for (const Column& column : mColumns) {
            if (column.values == nullptr) {
                mFaults.push_back({Kind::NO_COLUMN, column.key});
            } else if (!column.values->isArray()) {
                mFaults.push_back({Kind::NO_ARRAY, column.key});
            }
        }
    }

    void findUnequal() {
        const Json::ArrayIndex length = mColumns.front().values->size();
        for (const Column& column : mColumns) {
            if (column.values->size() != length) {
                mFaults.push_back({Kind::UNEQUAL, column.key, 0, length});
                return;
            }
        }
    }

    void findBad(Entry entry) {
        for (const Column& column : mColumns) {
            const auto bad = std::find_if(
                    column.values->begin(), column.values->end(),
                    [entry](const Json::Value& value) { return !isUsable(value, entry); });
            if (column.entry == entry && bad != column.values->end()) {
                const Json::ArrayIndex row = bad.index();
                mFaults.push_back(
                        {entry == Entry::TEXT ? Kind::NO_TEXT : Kind::NO_NUMBER, column.key, row});
                mUsable = std::min(mUsable, row);
            }
        }
    }

    std::vector<Column> mColumns;
    bool mAreThere = false;
    Json::ArrayIndex mLength = 0;
    Json::ArrayIndex mUsable = 0;
    std::vector<HeatTableFault> mFaults;
};

template <typename Row>
HeatTable<Row> readTable(const Columns& columns, Row (*rowAt)(const Columns&, Json::ArrayIndex)) {
    HeatTable<Row> table{columns.areThere(), {}, std::nullopt, columns.faults()};
    for (Json::ArrayIndex row = 0; row < columns.usable(); ++row) {
        table.rows.push_back(rowAt(columns, row));
    }
    if (columns.usable() < columns.length()) {
        table.badRow = rowAt(columns, columns.usable());
    }
    return table;
}

HeatTable<NamedFigure> readFigures(const Json::Value& model, const char* names) {
    const Columns columns(model, {{names, Entry::TEXT}, {key::kCoefficient, Entry::NUMBER}});
    return readTable<NamedFigure>(columns, [](const Columns& from, Json::ArrayIndex row) {
        return NamedFigure{from.text(0, row), from.number(1, row)};
    });
}

}  // namespace

HeatTable<NamedFigure> parseHeatModel(const Json::Value& model) {
    return readFigures(model, key::kDeviceName);
}

HeatTable<NamedFigure> parseBrightnessModel(const Json::Value& model) {
    return readFigures(model, key::kFactor);
}

HeatTable<GpuCurrent> parseGpuModel(const Json::Value& model) {
    const Columns columns(model, {{key::kGpuFreq, Entry::NUMBER}, {key::kPowerMa, Entry::NUMBER}});
    return readTable<GpuCurrent>(columns, [](const Columns& from, Json::ArrayIndex row) {
        return GpuCurrent{from.number(0, row), from.number(1, row)};
    });
}

HeatTable<ModemCurrent> parseModemModel(const Json::Value& model) {
    const Columns columns(model, {{key::kRsrpValue, Entry::NUMBER},
                                  {key::kCurrent4G, Entry::NUMBER},
                                  {key::kCurrent5G, Entry::NUMBER}});
    return readTable<ModemCurrent>(columns, [](const Columns& from, Json::ArrayIndex row) {
        return ModemCurrent{from.number(0, row), from.number(1, row), from.number(2, row)};
    });
}

ModemZones chooseModemZones(const Json::Value& model, const ZoneList& known) {
    ModemZones chosen;
    if (known.zones.size() >= kModemZones) {
        chosen.zones = {known.zones[0], known.zones[1]};
    }
    const Json::Value* const listed = findMember(model, key::kThermalZoneType);
    if (listed == nullptr) {
        chosen.fault = {Kind::NO_COLUMN, key::kThermalZoneType};
    } else if (!listed->isArray()) {
        chosen.fault = {Kind::NO_ARRAY, key::kThermalZoneType};
    } else if (known.unknownType) {
        chosen.fault = {Kind::UNKNOWN_ZONE, key::kThermalZoneType,
                        static_cast<Json::ArrayIndex>(known.zones.size())};
    } else if (!chosen.zones) {
        chosen.fault = {Kind::TOO_FEW_ZONES, key::kThermalZoneType};
    }
    return chosen;
}

float heatNumber(const Json::Value& value) {
    return value.isDouble() ? value.asFloat() : 0.0F;
}

}  // namespace kelvo
