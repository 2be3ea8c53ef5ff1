#include "kelvoconf/lint/Lint.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "config/ConfigPath.h"
#include "kelvoconf/lint/FindingText.h"
#include "kelvoconf/lint/Fleet.h"
#include "kelvoconf/lint/FleetText.h"
#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/ModelRanges.h"
#include "sim/scenario/Scenario.h"
#include "sim/scenario/ScenarioParser.h"
#include "support/Json.h"
#include "support/LogCapture.h"

using kelvo::lint::Finding;
using kelvo::lint::Fleet;
using kelvo::lint::LintInput;
using kelvo::lint::Severity;

namespace {

// Nothing is wrong here. The cases below change one text of it.
constexpr char kGood[] = R"({
'config_version': 'one', 'max_abn_tz_detect_times': 3,
'big_data': {'enable': 1, 'sample_period': 30, 'thermal_off_thousandth': 5},
'shell_temp_broadcast': {'disable': 0, 'start_end_values': [30, 55]},
'specified_tempzone_info': {'thermal_zone_type': ['cpu', 'gpu']},
'tsensor_tempzone_info': {'thermal_zone_type': ['soc']},
'old_safety_project': ['20001'], 'cpulimit_process': {'limit_info': ['a:1']},
'shell_temp_fitting_model': {
 'default': {'temp_model': {
  'back': {'index': 1, 'thermal_zone': ['board', 'battery'], 'coefficient': [0.5, 0.5, 10]},
  'front': {'index': 0, 'type': 1, 'thermal_zone': ['quiet'], 'coefficient': [1]}}},
 'flashon': {'temp_model': {
  'back': {'index': 1, 'thermal_zone': ['lamp'], 'coefficient': [1]},
  'front': {'index': 0, 'thermal_zone': ['lamp', 5], 'coefficient': [1, 0]}}},
 'backup_a': {'temp_model': {
  'back': {'index': 1, 'thermal_zone': ['board'], 'coefficient': [1]},
  'front': {'index': 0, 'thermal_zone': ['board'], 'coefficient': [1]}}},
 'backup_b': {'temp_model': {
  'back': {'index': 1, 'thermal_zone': ['battery', 'quiet'], 'coefficient': [1, 0]},
  'front': {'index': 0, 'thermal_zone': ['quiet'], 'coefficient': [1]}}},
 'ambient': {'temp_model': {
   'front': {'index': 0, 'thermal_zone': ['skin'], 'coefficient': [1]},
   'power': {'index': 10, 'thermal_zone': ['xo'], 'coefficient': [1, 12]}},
  'ambient_fitting': {
   'paramter_name': ['temp_coeff', 'tempSlope_coeff', 'power_coeff', 'const_coeff'],
   'coefficient': [0.001, 1.1, -0.005, 0.7],
   'temp_rate_threshold': 40, 'power_diff_threshold': 500, 'charge_current_threshold': 2500}},
 'ambient_charge': {'temp_model': {
   'back': {'index': 1, 'thermal_zone': ['skin'], 'coefficient': [1]},
   'power': {'index': 10, 'thermal_zone': ['xo'], 'coefficient': [1]}},
  'ambient_fitting': {
   'paramter_name': ['temp_coeff', 'tempSlope_coeff', 'power_coeff', 'const_coeff',
                     'battery_current_coeff'], 'coefficient': [0.001, 1, -0.005, 0.7, 4],
   'temp_rate_threshold': 40, 'power_diff_threshold': 500}},
 'heatsource_detection': {
  'heatsource_model': {'device_name': ['cpu', 'display', 'cellular', 'wifi', 'gpu'],
   'coefficient': [0.2, 0.05, 0.03, 0.2, 0.06]},
  'gpu_model': {'gpufreq': [220, 350, 460], 'powermA': [120, 210, 300]},
  'brightness_model': {'factor': ['el_brt', 'el_lvl'], 'coefficient': [480, 2047]},
  'cellar_model': {'rsrp_value': [-125, -115], 'current_value_4G': [480, 390],
   'current_value_5G': [600, 470], 'thermal_zone_type': ['amp', 'base']}}},
'thermal_status_model': {
 'temp_threshold':      [-1,36,37,38,39,40,41,42,43,44,45,46,47,48,49,50,51,52,53,54,55],
 'temp_threshold_down': [-1,35,36,37,38,39,40,41,42,43,44,45,46,47,48,49,50,51,52,53,54],
 'thermal_status':        [0,0,0,1,1,1,2,2,2,3,3,3,4,4,4,5,5,5,6,6,6],
 'thermal_status_report': [0]},
'SM8450': {'big_data': {'sample_period': 40}},
'41052': {'config_version': 'two'},
'41052,41053': {'shell_temp_broadcast': {'start_end_values': [31, 56]}}
})";

struct Case {
    std::string from, to;
    std::string findings;  // "rule path:line", in order, separated by "; "
    std::optional<std::string> sub = {};
};

/** A case a line, "FROM -> TO => FINDINGS"; indented lines go on with the one before. */
std::vector<Case> cases(const std::string& text) {
    static const std::regex kCase("(.*) -> (.*) =>(?: (.*))?");
    std::istringstream lines(std::regex_replace(text, std::regex("\\n +"), " "));
    std::vector<Case> found;
    std::smatch parts;
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_match(line, parts, kCase)) {
            found.push_back({parts[1], parts[2], parts[3]});
        } else {
            EXPECT_TRUE(line.empty() || line.starts_with("// ")) << line;
        }
    }
    return found;
}

/** Findings whose paths hold short names for long parts; "/M" is the model M of a scene. */
std::string written(std::string findings) {
    for (const auto& [name, part] : {std::pair{"HEAT", "~heatsource_detection"},
                                     {"AMBIENT", "~ambient.ambient_fitting"},
                                     {"STATUS", "thermal_status_model"},
                                     {"/", ".temp_model."},
                                     {"~", "shell_temp_fitting_model."}}) {
        findings = std::regex_replace(findings, std::regex(name), part);
    }
    return findings;
}

LintInput inputFor(const Case& test) {
    std::string text = kGood;
    const size_t at = text.find(test.from);
    EXPECT_NE(at, std::string::npos) << test.from;
    text.replace(at, test.from.size(), test.to);
    LintInput input;
    input.main = {"main", json(text)};
    if (test.sub) {
        input.sub = {"sub", json(*test.sub)};
    }
    input.platform = "SM8450";
    input.project = "41052";
    input.zones = {"cpu",  "gpu", "soc", "board", "battery", "quiet", "lamp",
                   "skin", "xo",  "amp", "base",  "twin",    "twin"};
    return input;
}

std::string summary(const std::vector<Finding>& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += (text.empty() ? "" : "; ") + finding.rule + " " + finding.path + ":" +
                std::to_string(finding.line) + (finding.file == "main" ? "" : "@" + finding.file);
        EXPECT_FALSE(finding.what.empty() || finding.effect.empty() || finding.mend.empty())
                << finding.rule;
    }
    return text;
}

class Lint : public testing::Test {
    LogCapture log;  // keeps the parsers' lines apart
};

void check(const std::vector<Case>& cases) {
    for (const Case& test : cases) {
        EXPECT_EQ(summary(lintConfig(inputFor(test))), written(test.findings))
                << test.from << " -> " << test.to << test.sub.value_or("");
    }
}

}  // namespace

TEST_F(Lint, findsWhatTheDaemonCannotUseAtAll) {
    check(cases(R"(
{ ->  { => text-before-object :1
'one', -> 'one' => not-json :2
'two'} -> 'two' => not-json :50
temp_threshold_down -> temp_threshold_dwn => wrong-main-file :1;
    status-list-missing STATUS.temp_threshold_down:42; unknown-key STATUS.temp_threshold_dwn:44
{ -> { /* temp_threshold_down => not-json :1
)"));
    check({{"{", "{", ""},
           {"'disable': 0", "'disable': 0,\n'disable': 0", "repeated-key disable:5"},
           {"{", "{", "not-json :1@sub", "{'a'"}});
}

TEST_F(Lint, findsSectionsThatDoNotApply) {
    check(cases(R"(
'SM8450': {'big_data': {'sample_period': 40}} -> 'SM8450': 5 => section-not-object SM8450:47
'SM8450' -> 'SM8451' => section-never-applies SM8451:47
'SM8450' -> 'SDM450' => section-never-applies SDM450:47
'41052': { -> ' 41052': { => section-never-applies " 41052":48
'41052,41053' -> '41052, 41053' => section-never-applies "41052, 41053":49
'41052,41053' -> '41052;41053' => section-never-applies "41052;41053":49
'41052' -> '41052\n' => section-never-applies "41052\n":48
'41052,41053' -> '41052,' => section-for-unknown-project "41052,":49
// A value is judged where it comes from, which only the one in force is.
'sample_period': 40 -> 'sample_period': 4 => out-of-range SM8450.big_data.sample_period:47
'sample_period': 30 -> 'sample_period': 3 =>
[31, 56] -> [31] => broadcast-band "41052,41053".shell_temp_broadcast.start_end_values:49
)"));
    check({{"{", "{", "section-shadowed \"41052,41053\":2@sub; section-never-applies MT6983:3@sub",
            "{'41052': {'config_version': 'x'},\n'41052,41053': {'config_version': 'y'},\n"
            "'MT6983': {'config_version': 'z'}}"},
           {"{", "{", "wrong-type \"41052,4\".old_safety_project:2@sub",
            "{\n'41052,4': {'old_safety_project': 1}}"},
           {"{", "{",
            "creeping-index ~backup_a/front.index:17; duplicate-index ~default/front.index:2@sub",
            "{'shell_temp_fitting_model': {'default': {'temp_model': {\n'front': {'index': "
            "1}}}}}"}});
}

TEST_F(Lint, findsKeysNobodyReadsAndValuesOfAnotherType) {
    check(cases(R"(
paramter_name': ['temp_coeff', 'tempSlope_coeff', 'power_coeff', 'const_ -> parameter_name': ['a =>
    ambient-parameters AMBIENT.paramter_name:24; unknown-key AMBIENT.parameter_name:25
'cellar_model' -> 'cellular_model' => unknown-key HEAT.cellular_model:40
'config_version': 'two' -> 'config_versoin': 'two' => unknown-key 41052.config_versoin:48
'config_version': 'two' -> 'config_version': null => null-value 41052.config_version:48
'ambient_charge': { -> 'ambient_charge': {'colour': null, => unknown-key ~ambient_charge.colour:28
times': 3 -> times': '3' => wrong-type max_abn_tz_detect_times:2
'enable': 1 -> 'enable': true => wrong-type big_data.enable:3
{'limit_info': ['a:1']} -> ['a:1'] => not-an-object cpulimit_process:7
': 2500 -> ': '2' => wrong-type AMBIENT.charge_current_threshold:27
'type': 1 -> 'type': -1 => wrong-type ~default/front.type:11
['20001'] -> [20001] => skipped-element old_safety_project[0]:7
// Another band is in force.
[30, 55] -> [30, 'x'] =>
[31, 56] -> [31, 'x'] => skipped-element "41052,41053".shell_temp_broadcast.start_end_values[1]:49
[31, 56] -> [56, 31000] => wrong-unit "41052,41053".shell_temp_broadcast.start_end_values[1]:49
[31, 56] -> [56, 31] => broadcast-band "41052,41053".shell_temp_broadcast.start_end_values:49
{'start_end_values': [31, 56]} -> [31000] => unused-thresholds "41052,41053".shell_temp_broadcast:49
thousandth': 5 -> thousandth': -5 => out-of-range big_data.thermal_off_thousandth:3
thousandth': 5 -> thousandth': 1001 => absurd-count big_data.thermal_off_thousandth:3
times': 3 -> times': -1 => absurd-count max_abn_tz_detect_times:2
times': 3 -> times': 17281 => absurd-count max_abn_tz_detect_times:2
'sample_period': 40 -> 'sample_period': 86401 => absurd-count SM8450.big_data.sample_period:47
'index': 10 -> 'index': 1001 => absurd-count ~ambient/power.index:23
)"));
}

TEST_F(Lint, findsScenesAndModelsThatAreDropped) {
    check(cases(R"(
quiet -> quite => no-default ~default:9; unknown-zone ~default/front.thermal_zone[0]:11
'battery' -> 77 => unknown-zone ~default/back.thermal_zone[1]:10;
    creeping-index ~backup_a/back.index:16
lamp -> lmap => unknown-zone ~flashon/back.thermal_zone[0]:13;
    creeping-index ~backup_a/back.index:16
['lamp', 5] -> ['lamp', 13] => zone-not-there ~flashon/front.thermal_zone[1]:14
['lamp', 5] -> ['twin', 5] => shared-zone-type ~flashon/front.thermal_zone[0]:14
, 5] -> , {}] => scene-discarded ~flashon:12; unknown-zone ~flashon/front.thermal_zone[1]:14
0, 'type': 1 -> '0' => model-skipped ~default/front.index:11;
    creeping-index ~backup_a/front.index:17
'thermal_zone': ['lamp', 5],  ->  => model-skipped ~flashon/front.thermal_zone:14;
    creeping-index ~backup_a/front.index:17
1, 0 -> 1, 'x' => model-skipped ~flashon/front.coefficient[1]:14;
    creeping-index ~backup_a/front.index:17
[1, 0] -> 1 => model-skipped ~flashon/front.coefficient:14; creeping-index ~backup_a/front.index:17
[0.5, 0.5, 10] -> [0.5, 0.5, 7, 8, 10] => ignored-coefficients ~default/back.coefficient[2]:10
[0.5, 0.5, 10] -> [1] => unweighted-zones ~default/back.thermal_zone[1]:10
'type': 1 -> 'type': 2 => unsupported-type ~default/front.type:11
default -> default': {'temp_model': {}}, 'x => no-default ~default:9; unused-scene ~x:9
'flashon' -> 'flash_on' => unused-scene ~flash_on:12
shell_temp_fitting_model -> shell_temp_fitting_model': 1, 'other => unknown-key other:8;
    not-an-object shell_temp_fitting_model:8
shell_temp_fitting_model -> other => no-models shell_temp_fitting_model:1; unknown-key other:8
'flashon': { -> 'screen_fold': 7, 'flashon': { => not-an-object ~screen_fold:12
)"));
}

TEST_F(Lint, findsWhatIndexesAndBackupsDo) {
    check(cases(R"(
'index': 1 -> 'index': 0 => duplicate-index ~default/front.index:11;
    creeping-index ~backup_a/back.index:16
0, 'type': 1 -> -1 => reference-index ~default/front.index:11;
    creeping-index ~backup_a/front.index:17
0, 'type': 1 -> -2 => negative-index ~default/front.index:11;
    creeping-index ~backup_a/front.index:17
// A scene that is read later gives the index its name back.
'power': {'index': 10 -> 'power': {'index': 1 =>
back': {'index': 1, 'thermal_zone': ['lamp -> lid': {'index': 1, 'thermal_zone': ['lamp =>
    index-of-another-name ~default/back.index:10; index-of-another-name ~backup_a/back.index:16;
    index-of-another-name ~backup_b/back.index:19
['battery', 'quiet'] -> ['battery'] => backup-hides-zone ~backup_b/front.thermal_zone[0]:20
['battery', 'quiet'] -> ['quiet', 'board'] => backups-share-zone ~default/back.thermal_zone[0]:10
// Names that nearly mean something.
'front': {'index': 0, 'type -> 'Fornt': {'index': 0, 'type =>
    index-of-another-name ~default/Fornt.index:11; model-name ~default/Fornt:11
back': {'index': 1, 'thermal_zone': ['lamp -> bakc': {'index': 1, 'thermal_zone': ['lamp =>
    index-of-another-name ~default/back.index:10; model-name ~flashon/bakc:13;
    index-of-another-name ~backup_a/back.index:16; index-of-another-name ~backup_b/back.index:19
'power': {'index': 10 -> 'Power': {'index': 10 => ambient-models ~ambient.temp_model:21;
    model-name ~ambient/Power:23
'power': {'index': 10 -> 'Power': {'index': 11, 'thermal_zone': ['xo'], 'coefficient': [1]},
    'power': {'index': 10 =>
'front': {'index': 0, 'type -> 'front2': {'index': 0, 'type =>
    index-of-another-name ~default/front2.index:11
'front': {'index': 0, 'type -> 'refer': {'index': 0, 'type =>
    index-of-another-name ~default/refer.index:11; model-name ~default/refer:11
)"));
}

TEST_F(Lint, findsListsOfZonesAndAmbientParameters) {
    check(cases(R"(
gpu -> gpus', 'x => unknown-zone specified_tempzone_info.thermal_zone_type[1]:5
['soc'] -> [2] => unknown-zone tsensor_tempzone_info.thermal_zone_type[0]:6
['cpu', 'gpu'] -> 'cpu' => wrong-type specified_tempzone_info.thermal_zone_type:5
-0.005, 0.7] -> -0.005] => ambient-parameters AMBIENT.coefficient:26
-0.005, 0.7] -> -0.005, '1'] => ambient-parameters AMBIENT.coefficient[3]:26
tempSlope_coeff -> tempslope_coeff => ambient-parameters AMBIENT.paramter_name:25;
    unknown-parameter AMBIENT.paramter_name[1]:25
'temp_rate_threshold': 40,  ->  => ambient-parameters AMBIENT.temp_rate_threshold:24
40, 'power_diff_threshold': 500 -> 0, 'power_diff_threshold': -1 =>
    threshold-never-met AMBIENT.temp_rate_threshold:27;
    threshold-never-met AMBIENT.power_diff_threshold:27
'ambient_charge' -> 'ambient_fold' => ambient-not-switched ~ambient_fold:28
ambient': {'temp_model -> ambient': {'t': 1, 'temp_models => unknown-key ~ambient.t:21;
    unknown-key ~ambient.temp_models:21; scene-discarded ~ambient:21; no-ambient ~ambient:21
'power': {'index': 10 -> 'watt': {'index': 10 => ambient-models ~ambient.temp_model:21
'type': 1 -> 'type': 1, 'ambient_fitting': {} => unknown-key ~default/front.ambient_fitting:11
)"));
}

TEST_F(Lint, findsLevelsThatAreNotReached) {
    check(cases(R"(
,55 ->  => thresholds-not-21 STATUS.temp_threshold:43; status-length STATUS.thermal_status:45
,54] -> ] => thresholds-not-21 STATUS.temp_threshold_down:44
[-1,36,37 -> [-1,37,36 => list-not-rising STATUS.temp_threshold[2]:43;
    thresholds-cross STATUS.temp_threshold_down[2]:44
[-1,36,37 -> [-1,37,37 => level-never-reached STATUS.temp_threshold[2]:43
[-1,36,37 -> [-1,-1,37 => wildcard-threshold STATUS.temp_threshold[1]:43
[-1,36,37 -> [-1,'',37 => skipped-element STATUS.temp_threshold[1]:43;
    thresholds-not-21 STATUS.temp_threshold:43; status-length STATUS.thermal_status:45
[-1,35,36 -> [-1,36,36 => thresholds-cross STATUS.temp_threshold_down[1]:44
,54,55] -> ,54,55000] => wrong-unit STATUS.temp_threshold[20]:43
,52,53,54] -> ,52000,53000,54000] => wrong-unit STATUS.temp_threshold_down[18]:44
[0,0,0,1 -> [0,0,2,1 => list-not-rising STATUS.thermal_status[3]:45
,5,6,6,6] -> ,5,6,6] => status-length STATUS.thermal_status:45
[0] -> [] => status-list-missing STATUS.thermal_status_report:46
[0] -> 0 => wrong-type STATUS.thermal_status_report:46
thermal_status_model -> thermal_status_model': null, 'x => null-value thermal_status_model:42;
    unknown-key x:42; no-status-model thermal_status_model:42
)"));
}

TEST_F(Lint, findsTablesOfTheHeatComponentsThatCannotBeUsed) {
    check(cases(R"(
, 0.06 ->  => heat-table-unequal HEAT.heatsource_model.coefficient:37
, 0.2 -> , 0 => heat-table-zero HEAT.heatsource_model.coefficient[3]:37
wifi -> wlan => heat-unknown-name HEAT.heatsource_model.device_name[3]:36;
    heat-without-coefficient HEAT.heatsource_model.device_name:36
'wifi' -> 7 => heat-table-zero HEAT.heatsource_model.device_name[3]:36;
    heat-without-coefficient HEAT.heatsource_model.device_name:36
wifi -> gpu => heat-repeated-name HEAT.heatsource_model.device_name[4]:36;
    heat-without-coefficient HEAT.heatsource_model.device_name:36
heatsource_model -> y => no-heat-center HEAT.heatsource_model:35; unknown-key HEAT.y:36
gpu_model -> z => no-gpu-table HEAT.gpu_model:35; unknown-key HEAT.z:38
350, 460] -> 460, 350] => heat-table-not-ascending HEAT.gpu_model.gpufreq[2]:38
, 300 ->  => heat-table-unequal HEAT.gpu_model.powermA:38
, 'powermA': [120, 210, 300] ->  => heat-table-missing HEAT.gpu_model.powermA:38
[220, 350, 460] -> [220000, 350000, 460000] => wrong-unit HEAT.gpu_model.gpufreq[0]:38
[480, 2047] -> [480, 0] => heat-table-zero HEAT.brightness_model.coefficient[1]:39
'el_lvl' -> 'el_level' => heat-unknown-name HEAT.brightness_model.factor[1]:39
[-125, -115] -> [-115, -125] => heat-table-not-ascending HEAT.cellar_model.rsrp_value[1]:40
[600, 470] -> [600, 0] => heat-table-zero HEAT.cellar_model.current_value_5G[1]:41
['amp', 'base'] -> ['amp'] => modem-zones HEAT.cellar_model.thermal_zone_type:41
', 'base -> ere => unknown-zone HEAT.cellar_model.thermal_zone_type[0]:41
)"));
}

TEST_F(Lint, saysWhatIsNear) {
    const auto first = [](const char* from, const char* to) {
        const std::vector<Finding> findings = lintConfig(inputFor({from, to, ""}));
        return findings.empty() ? Finding() : findings.front();
    };
    EXPECT_EQ(first("['lamp'], ", "['lmap'], ").what,
              "the phone has no thermal zone \"lmap\"; the nearest is \"lamp\"");
    EXPECT_EQ(first("['lamp', 5]", "['lamp', 'nowhere']").effect,
              "does not keep the scene: a switch to it leaves the models as they are");
    EXPECT_EQ(first("'cellar_model'", "'cellular_model'").effect,
              "ignores it; the daemon reads \"cellar_model\", spelled so");
    EXPECT_EQ(first("'sample_period': 40", "'sampel_period': 40").mend, "write \"sample_period\"");
    EXPECT_EQ(first("'flashon'", "'flash_on'").mend, "write \"flashon\"");
    EXPECT_EQ(first("'SM8450'", "'SM84500'").mend, "write \"SM8450\"");
}

TEST_F(Lint, judgesModelsAtTheTemperaturesOfThePhone) {
    const std::vector<Case> tests = cases(R"(
[0.5, 0.5, 10] -> [0.5, 0.5] =>
[0.5, 0.5, 10] -> [0.5, 6.0] => implausible-value ~default/back.coefficient[1]:10
[0.5, 0.5, 10] -> [0.5, -6.0] => implausible-value ~default/back.coefficient[1]:10
[0.5, 0.5, 10] -> [0.5, 0.5, 1e308] => implausible-value ~default/back.coefficient[2]:10
[0.5, 0.5, 10] -> [0.5, 0.5, 56500] => implausible-value ~default/back.coefficient[2]:10
[0.5, 0.5, 10] -> [0.5, 0.5, 55500] =>
[0.5, 0.5, 10] -> [0.5, 0.5, -7.5] => constant-unit ~default/back.coefficient[2]:10
[0.5, 0.5, 10] -> [0.5, 0.5, 99] =>
// A zone that fails gives the model no value.
['board', 'battery'], 'coefficient': [0.5, 0.5, 10] -> ['cpu', 'battery'], 'coefficient': [0.5, 9] =>
// A power is no temperature.
'coefficient': [1, 12] -> 'coefficient': [9, 12] => constant-unit ~default/back.coefficient[2]:10
['skin'], 'coefficient': [1] -> ['xo'], 'coefficient': [9] =>
    constant-unit ~default/back.coefficient[2]:10; implausible-value ~ambient/front.coefficient[0]:22
// A number stands for a zone, too.
['lamp', 5], 'coefficient': [1, 0] -> [4, 5], 'coefficient': [9] =>
    constant-unit ~default/back.coefficient[2]:10; unweighted-zones ~flashon/front.thermal_zone[1]:14; implausible-value ~flashon/front.coefficient[0]:14
)");
    for (const Case& test : tests) {
        // The second row makes it hot, the third cold.
        kelvo::lint::ModelRanges ranges([](const auto& visit) {
            for (const int32_t battery : {31000, 35000, -39000}) {
                visit({"row",
                       {{"board", 33000}, {"battery", battery}, {"cpu", 116000}, {"xo", 30000}},
                       {{4, battery}, {5, 30000}}});
            }
        });
        LintInput input = inputFor(test);
        input.ranges = &ranges;
        EXPECT_EQ(summary(lintConfig(input)), written(test.findings)) << test.from << test.to;
    }
}

TEST_F(Lint, tellsWhomOfAllPhonesAFindingHits) {
    const auto found = [](const char* from, const char* to, std::optional<std::string> sub = {}) {
        const LintInput input = inputFor({from, to, "", sub});
        const Fleet fleet = kelvo::lint::fleetOf(input, false, false);
        std::string text = toText(fleet);
        for (const auto& finding : lintFleet(input, fleet)) {
            const std::string lines = toText(finding, fleet);
            text += "\n" + finding.finding.path + " =>" + lines.substr(lines.rfind(": ") + 1);
            text.pop_back();
        }
        return text;
    };
    const std::string all = "platform SM8450 and any other; projects 41052, 41053 and any other";
    EXPECT_EQ(found("{", "{"), all);
    EXPECT_EQ(found("'sample_period': 30", "'sample_period': 3"),
              all + "\nbig_data.sample_period =>   any other platform");
    EXPECT_EQ(found("[31, 56]", "[56, 31]"), all + "\n\"41052,41053\".shell_temp_broadcast.start_"
                                                   "end_values =>   projects 41052, 41053");
    EXPECT_EQ(found("'enable'", "'enabel'"), all + "\nbig_data.enabel =>   every phone");
    EXPECT_EQ(found("'SM8450': {'big_data': {'sample_period': 40}},\n'41052'", "'41052'",
                    "{'41053': {'config_version': []}, 'big_data': {'sample_period': 1}}"),
              "any platform; projects 41052, 41053 and any other\n"
              "big_data.sample_period =>   every phone\n41053.config_version =>   project 41053");
}

TEST_F(Lint, judgesZonesOnlyWhenTheyAreKnown) {
    LintInput input = inputFor({"['lamp', 5]", "['nowhere', 99]", ""});
    EXPECT_NE(summary(lintConfig(input)), "");
    input.zones.reset();
    EXPECT_EQ(summary(lintConfig(input)), "");
}

TEST_F(Lint, writesFindingsForPeopleAndMachines) {
    const Finding finding{Severity::ERROR, "a-rule", "f.json", "a[0]", 7, "\"x\"", "y", "z"};
    EXPECT_EQ(toText(finding),
              "f.json:7: error: a[0]: \"x\" [a-rule]\n    effect: y\n    mend:   z\n");
    EXPECT_EQ(toJsonLine(finding),
              R"({"severity":"error","rule":"a-rule","file":"f.json","path":"a[0]","line":7,)"
              R"("what":"\"x\"","effect":"y","mend":"z"})"
              "\n");
    EXPECT_NE(toJsonLine(Finding()).find(R"("line":null)"), std::string::npos);
}

TEST_F(Lint, findsNothingInTheExamples) {
    // example, platform, project
    const std::tuple<const char*, const char*, const char*> cases[] = {
            {"charge", "MT6983", "41052"},    {"day", "MT6983", "41052"},
            {"failing-zone", "SM8450", ""},   {"game", "SM8450", "30117"},
            {"hello", "SM8450", ""},          {"scenes", "SM8450", ""},
            {"video-call", "SM8450", "30117"}};
    for (const auto& [example, platform, project] : cases) {
        const sim::Scenario scenario =
                sim::loadScenario(std::string(KELVO_EXAMPLES) + "/" + example + "/scenario.json");
        LintInput input;
        input.main = {"main", *scenario.config.main};
        if (scenario.config.platform) {
            input.sub = {"sub", *scenario.config.platform};
        }
        input.platform = platform;
        input.project = project;
        input.zones.emplace();
        for (const sim::ZoneSpec& zone : scenario.zones) {
            input.zones->push_back(zone.type);
        }
        EXPECT_EQ(summary(lintConfig(input)), "") << example;
    }
}

TEST_F(Lint, documentsEveryKey) {
    std::stringstream docs;
    docs << std::ifstream(KELVO_CONFIGURATION_DOCS).rdbuf();
    for (const kelvo::lint::KeyEntry& key : kelvo::lint::keyCatalogue()) {
        const std::string unit = key.unit.empty() ? "" : "; " + key.unit;
        const std::string row = "| `" + kelvo::joinConfigPath(key.path) + "` | " +
                                typeText(key.type) + unit + " | " + key.fallback + " | " +
                                key.reader + " | " + key.otherwise + " |\n";
        EXPECT_NE(docs.str().find(row), std::string::npos) << row;
    }
}
