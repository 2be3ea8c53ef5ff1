#include "heat/HeatTables.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/Json.h"

namespace {

/** "key[element] kind", the kind with a length where columns differ. */
std::string shown(const kelvo::HeatTableFault& fault) {
    static const char* const kKinds[] = {" missing", " no array", " is not ", " no number",
                                         " no text", " unknown",  " too few"};
    return fault.key + ("[" + std::to_string(fault.element)) + "]" +
           kKinds[static_cast<int>(fault.kind)] +
           (fault.length > 0 ? std::to_string(fault.length) : "");
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
            {"3", "|||device_name[0] missing;coefficient[0] missing;"},
            {"{'device_name':null,'coefficient':[1]}", "|||device_name[0] missing;"},
            {"{'coefficient':'1'}", "|||device_name[0] missing;coefficient[0] no array;"},
            {"{'device_name':['a','b'],'coefficient':[1]}", "columns|||coefficient[0] is not 2;"},
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
        EXPECT_EQ(shown(kelvo::parseHeatModel(parsed(model))), expected) << model;
    }
    EXPECT_EQ(shown(kelvo::parseBrightnessModel(parsed("{'factor':['el_brt'],'coefficient':[]}"))),
              "columns|||coefficient[0] is not 1;");
}

TEST(HeatTablesTest, readsColumnsInTheirPlaces) {
    const auto gpu = kelvo::parseGpuModel(parsed("{'gpufreq':[300,450,9],'powermA':[100,200,0]}"));
    ASSERT_EQ(gpu.rows.size(), 2U) << "before the bad one";
    EXPECT_EQ(gpu.rows[1].gpufreq, 450);
    EXPECT_EQ(gpu.rows[1].powermA, 200);
    EXPECT_TRUE(gpu.badRow.has_value());
    EXPECT_EQ(shown(gpu.faults.at(0)), "powermA[2] no number");
    const auto modem = kelvo::parseModemModel(
            parsed("{'rsrp_value':[-120],'current_value_4G':[600],'current_value_5G':[900]}"));
    ASSERT_EQ(modem.rows.size(), 1U);
    EXPECT_EQ(modem.rows[0].rsrp, -120);
    EXPECT_EQ(modem.rows[0].current4G, 600);
    EXPECT_EQ(modem.rows[0].current5G, 900);
    EXPECT_EQ(shown(kelvo::parseModemModel(parsed("{'rsrp_value':[1],'current_value_4G':[1,2],"
                                                  "'current_value_5G':[]}"))
                            .faults.at(0)),
              "current_value_4G[0] is not 1");
}

TEST(HeatTablesTest, choosesTheTwoZonesOfTheModem) {
    kelvo::ZoneTable table;
    table.add("pa");
    table.add("base");
    // zones, found, fault
    const std::tuple<const char*, bool, const char*> rows[] = {
            {"['base','pa']", true, ""},
            {"['base','pa','nowhere']", true, "thermal_zone_type[2] unknown"},
            {"['base','nowhere','pa']", false, "thermal_zone_type[1] unknown"},
            {"[1]", false, "thermal_zone_type[0] unknown"},
            {"['pa']", false, "thermal_zone_type[0] too few"},
            {"[]", false, "thermal_zone_type[0] too few"},
            {"'pa'", false, "thermal_zone_type[0] no array"},
            {"null", false, "thermal_zone_type[0] missing"},
    };
    for (const auto& [zones, found, fault] : rows) {
        const Json::Value model = parsed("{'thermal_zone_type':" + std::string(zones) + "}");
        const auto chosen = chooseModemZones(model, resolveZoneList(model, table));
        EXPECT_EQ(chosen.zones.has_value(), found) << zones;
        EXPECT_EQ(chosen.fault ? shown(*chosen.fault) : "", fault) << zones;
        if (chosen.zones) {
            EXPECT_EQ(chosen.zones->amplifier.name, "base");
            EXPECT_EQ(chosen.zones->base.index, 0);
        }
    }
}
