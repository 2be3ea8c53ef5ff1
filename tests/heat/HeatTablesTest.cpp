#include "heat/HeatTables.h"

#include <gtest/gtest.h>
#include <json/reader.h>

#include <memory>
#include <sstream>

#include "support/Json.h"

namespace {

using kelvo::HeatTableFault;
using Kind = HeatTableFault::Kind;

Json::Value parse(const std::string& text) {
    Json::Value value;
    std::istringstream(json(text)) >> value;
    return value;
}

std::string shown(const HeatTableFault& fault) {
    const std::string element = "[" + std::to_string(fault.element) + "]";
    switch (fault.kind) {
        case Kind::NO_COLUMN:
            return std::string("no ") + fault.key;
        case Kind::NO_ARRAY:
            return std::string("odd ") + fault.key;
        case Kind::UNEQUAL:
            return std::string(fault.key) + " is not " + std::to_string(fault.length);
        case Kind::NO_NUMBER:
            return fault.key + element + " no number";
        case Kind::NO_TEXT:
            return fault.key + element + " no text";
        case Kind::UNKNOWN_ZONE:
            return fault.key + element + " unknown";
        case Kind::TOO_FEW_ZONES:
            return std::string("few ") + fault.key;
    }
    return "?";
}

std::string figure(const kelvo::NamedFigure& row) {
    std::ostringstream text;
    text << row.name << "=" << row.value << ";";
    return text.str();
}

/** "columns|rows|bad row|faults" */
std::string shown(const kelvo::HeatTable<kelvo::NamedFigure>& table) {
    std::string text = table.hasColumns ? "columns|" : "|";
    for (const auto& row : table.rows) {
        text += figure(row);
    }
    text += "|" + (table.badRow ? figure(*table.badRow) : "") + "|";
    for (const auto& fault : table.faults) {
        text += shown(fault) + ";";
    }
    return text;
}

}  // namespace

TEST(HeatTablesTest, saysWhatIsWrongAndWhere) {
    const std::pair<const char*, const char*> rows[] = {
            {"{'device_name':['cpu','x'],'coefficient':[0.5,-2]}", "columns|cpu=0.5;x=-2;||"},
            {"{'device_name':[],'coefficient':[]}", "columns|||"},
            {"3", "|||no device_name;no coefficient;"},
            {"{'device_name':null,'coefficient':[1]}", "|||no device_name;"},
            {"{'coefficient':'1'}", "|||no device_name;odd coefficient;"},
            {"{'device_name':['a','b'],'coefficient':[1]}", "columns|||coefficient is not 2;"},
            {"{'device_name':['a','b','c'],'coefficient':[1,0,0]}",
             "columns|a=1;|b=0;|coefficient[1] no number;"},
            {"{'device_name':['a',7,null],'coefficient':[1,2,'3']}",
             "columns|a=1;|7=2;|coefficient[2] no number;device_name[1] no text;"},
            {"{'device_name':['a',{}],'coefficient':[true,2]}",
             "columns||a=0;|coefficient[0] no number;device_name[1] no text;"},
            {"{'device_name':[[1]],'coefficient':[1e-60]}",
             "columns||=0;|coefficient[0] no number;device_name[0] no text;"},
    };
    for (const auto& [model, expected] : rows) {
        EXPECT_EQ(shown(kelvo::parseHeatModel(parse(model))), expected) << model;
    }
    EXPECT_EQ(shown(kelvo::parseBrightnessModel(parse("{'factor':['el_brt'],'coefficient':[]}"))),
              "columns|||coefficient is not 1;");
}

TEST(HeatTablesTest, readsColumnsInTheirPlaces) {
    const auto gpu = kelvo::parseGpuModel(parse("{'gpufreq':[300,450,9],'powermA':[100,200,0]}"));
    ASSERT_EQ(gpu.rows.size(), 2U) << "before the bad one";
    EXPECT_EQ(gpu.rows[1].gpufreq, 450);
    EXPECT_EQ(gpu.rows[1].powermA, 200);
    EXPECT_TRUE(gpu.badRow.has_value());
    EXPECT_EQ(shown(gpu.faults.at(0)), "powermA[2] no number");
    const auto modem = kelvo::parseModemModel(
            parse("{'rsrp_value':[-120],'current_value_4G':[600],'current_value_5G':[900]}"));
    ASSERT_EQ(modem.rows.size(), 1U);
    EXPECT_EQ(modem.rows[0].rsrp, -120);
    EXPECT_EQ(modem.rows[0].current4G, 600);
    EXPECT_EQ(modem.rows[0].current5G, 900);
    EXPECT_EQ(shown(kelvo::parseModemModel(parse("{'rsrp_value':[1],'current_value_4G':[1,2],"
                                                 "'current_value_5G':[]}"))
                            .faults.at(0)),
              "current_value_4G is not 1");
}

TEST(HeatTablesTest, choosesTheTwoZonesOfTheModem) {
    kelvo::ZoneTable table;
    table.add("pa");
    table.add("base");
    const struct {
        const char* zones;
        bool found;
        const char* fault;
    } rows[] = {
            {"['base','pa']", true, ""},
            {"['base','pa','nowhere']", true, "thermal_zone_type[2] unknown"},
            {"['base','nowhere','pa']", false, "thermal_zone_type[1] unknown"},
            {"[1]", false, "thermal_zone_type[0] unknown"},
            {"['pa']", false, "few thermal_zone_type"},
            {"[]", false, "few thermal_zone_type"},
            {"'pa'", false, "odd thermal_zone_type"},
            {"null", false, "no thermal_zone_type"},
    };
    for (const auto& row : rows) {
        const Json::Value model = parse("{'thermal_zone_type':" + std::string(row.zones) + "}");
        const auto chosen = chooseModemZones(model, resolveZoneList(model, table));
        EXPECT_EQ(chosen.zones.has_value(), row.found) << row.zones;
        EXPECT_EQ(chosen.fault ? shown(*chosen.fault) : "", row.fault) << row.zones;
        if (chosen.zones) {
            EXPECT_EQ(chosen.zones->amplifier.name, "base");
            EXPECT_EQ(chosen.zones->base.index, 0);
        }
    }
}
