// What a replay leaves behind for people: the page in a browser and the trace.

#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <sstream>

#include "sim/scenario/JsonPlace.h"
#include "sim/tree/TemporaryFolder.h"
#include "support/Files.h"
#include "support/Json.h"
#include "support/Program.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;

/** A replay of an example with all that it writes. */
class Replay {
  public:
    /** With one text of the configuration in place of another; `status` is the replay's. */
    explicit Replay(const std::string& name, const std::string& wrong = "",
                    const std::string& right = "", int status = 0) {
        std::filesystem::copy(std::string(EXAMPLES) + "/" + name, path("scenario"));
        std::string config = readFile(path("scenario/kelvo.json"));
        config.replace(config.find(right), right.size(), wrong);
        std::ofstream(path("scenario/kelvo.json")) << config;
        const Program::Result result = Program::run(
                "kelvosim", {"replay", path("scenario/scenario.json"), "--events", path("events"),
                             "--report", page(), "--perfetto", path("trace")});
        EXPECT_EQ(result.status, status) << result.err;
        mOutput = result.out;
        mEvents = parsedLines(readFile(path("events")));
    }

    std::string path(const std::string& name) const { return mFolder.path() + "/" + name; }
    std::string page() const { return path("page.html"); }
    Json::Value trace() const { return sim::parseJson(readFile(path("trace")), "trace"); }

    /** What was written to the node of the shell: index → ms → m°C. */
    std::map<int32_t, std::map<int64_t, int32_t>> writes() const {
        std::map<int32_t, std::map<int64_t, int32_t>> result;
        for (const Json::Value& event : mEvents) {
            if (event["event"] == "write") {
                std::istringstream text(event["text"].asString());
                int32_t index = 0;
                int32_t temp = 0;
                text >> index >> temp;
                result[index][std::llround(event["t"].asDouble() * 1000)] = temp;
            }
        }
        return result;
    }
    const std::string& output() const { return mOutput; }
    const Json::Value& lastEvent() const { return mEvents.back()["event"]; }
    ptrdiff_t notifications() const {
        return std::ranges::count_if(mEvents, [](const Json::Value& event) {
            return event["event"].asString().starts_with("notify_");
        });
    }

  private:
    sim::TemporaryFolder mFolder{"kelvo-test-"};
    std::vector<Json::Value> mEvents;
    std::string mOutput;
};

/** A page in the browser, with an option that says what of it is wanted. */
Program::Result browse(const Replay& replay, const std::string& page, const std::string& option) {
    return Program::run("/usr/bin/chromium-headless-shell",
                        {"--no-sandbox", "--disable-gpu", "--window-size=1366,2400",
                         "--user-data-dir=" + replay.path("profile"), option, page});
}

/** Runs a script at the end of a copy of the page; the value of its last line as JSON. */
Json::Value ask(const Replay& replay, const std::string& expression) {
    std::string page = readFile(replay.page());
    page.insert(page.rfind("</body>"),
                "<pre id=answer></pre><script>document.getElementById('answer').textContent ="
                " '@@@' + JSON.stringify(" +
                        expression + ") + '@@@';</script>");
    const std::string copy = replay.path("copy.html");
    std::ofstream(copy) << page;
    const Program::Result result = browse(replay, "file://" + copy, "--dump-dom");
    const size_t begin = result.out.find("@@@{");
    const size_t end = result.out.find("}@@@");
    if (result.status != 0 || begin == std::string::npos || end == std::string::npos) {
        ADD_FAILURE() << "no answer: " << result.status << result.err;
        return {};
    }
    return sim::parseJson(result.out.substr(begin + 3, end - begin - 2), "answer");
}

/** Of a plot what is drawn: [[label…], [ms since t = 0, m°C…]…]. */
std::string drawn(const std::string& plot) {
    return "(() => { const plot = view.plots.find(one => one.name === '" + plot +
           "'); return [plot.lines.map(line => line.label), ...Array.from({length:"
           " plot.graph.numRows()}, (_, row) => Array.from({length: plot.graph.numColumns()},"
           " (_, column) => column === 0 ? plot.graph.getValue(row, 0) - run.info.startMs"
           " : Math.round(plot.graph.getValue(row, column) * 1000)))]; })()";
}

/** The value that a plot's first line shows at a time; a line stands until its next row. */
int64_t shownAt(const Json::Value& rows, int64_t timeMs) {
    int64_t value = 0;
    for (Json::ArrayIndex i = 1; i < rows.size() && rows[i][0].asInt64() <= timeMs; ++i) {
        value = rows[i][1].asInt64();
    }
    return value;
}

}  // namespace

TEST(KelvosimReportTest, plotsWhatTheReplayGave) {
    const Replay replay("hello");
    const Json::Value answer =
            ask(replay, "{zones:" + drawn("zones") + ", models:" + drawn("models") +
                                ", painted: [...document.querySelectorAll('canvas')].map(one =>"
                                " one.getContext('2d').getImageData(0, 0, one.width, one.height)"
                                ".data.reduce((sum, byte) => sum + (byte > 0), 0)),"
                                " fetched: performance.getEntriesByType('resource').length}");
    std::ifstream trace(std::string(EXAMPLES) + "/hello/trace.csv");
    std::string line;
    std::getline(trace, line);
    Json::ArrayIndex row = 0;
    for (char comma = 0; std::getline(trace, line);) {
        std::vector<int64_t> cells(4);
        std::istringstream(line) >> cells[0] >> comma >> cells[1] >> comma >> cells[2] >> comma >>
                cells[3];
        row += answer["zones"][row + 1][0].asInt64() <= cells[0] * 1000 ? 1U : 0U;
        for (Json::ArrayIndex zone = 1; zone <= 3; ++zone) {
            EXPECT_EQ(answer["zones"][row][zone].asInt64(), cells[zone]) << line;
        }
    }
    EXPECT_GT(row, 15U);
    EXPECT_EQ(answer["models"][0][0], "front");
    const auto writes = replay.writes();
    for (const auto& [timeMs, temp] : writes.at(0)) {
        EXPECT_EQ(shownAt(answer["models"], timeMs), temp) << timeMs;
    }
    int painted = 0;
    for (const Json::Value& canvas : answer["painted"]) {
        painted += canvas.asInt64() > 1000 ? 1 : 0;
    }
    EXPECT_GT(painted, 6) << "plots and strips";
    EXPECT_EQ(answer["fetched"], 0);
}

TEST(KelvosimReportTest, explainsWhatWasWritten) {
    const Replay replay("scenes");
    // The reasons as the page has them, put together again here.
    const Json::Value answer = ask(
            replay,
            "{passes: Array.from(run.passTimes, time => ({time, models:"
            " run.sets[run.passSet.at(time)].definitions.map(number => run.definitions[number])"
            ".map(model => ({index: model.index, computed: model.computed.at(time), sum:"
            " model.terms.reduce((sum, [zone, by]) => sum + by * run.readings.get(zone).at(time),"
            " 0) + (model.constant ?? 0)})), values: run.outputs.map(one =>"
            " [one.index, one.value.at(time), one.written.at(time)])})),"
            " rows: document.querySelectorAll('#notifications tbody tr').length,"
            " why: document.getElementById('why').textContent}");
    std::map<int32_t, std::map<int64_t, int32_t>> writes;
    for (const Json::Value& pass : answer["passes"]) {
        for (const Json::Value& model : pass["models"]) {
            EXPECT_EQ(model["computed"].asInt(), static_cast<int>(model["sum"].asDouble()));
        }
        for (const Json::Value& value : pass["values"]) {
            if (value[2] == 1) {
                writes[value[0].asInt()][pass["time"].asInt64()] = value[1].asInt();
            }
        }
    }
    EXPECT_EQ(writes, replay.writes());
    EXPECT_EQ(answer["rows"].asInt(), replay.notifications());
    EXPECT_GT(replay.notifications(), 10);
    EXPECT_THAT(answer["why"].asString(), AllOf(HasSubstr("sum"), HasSubstr("threshold of level")));
}

TEST(KelvosimReportTest, warnsOfTheConfiguration) {
    const Replay replay("hello", "\"bord\"]", "\"board\"]", 1);
    const Json::Value answer = ask(
            replay,
            "{text: [...document.querySelectorAll('#warnings td')].map(one => one.textContent)}");
    std::vector<std::string> cells;
    for (const Json::Value& cell : answer["text"]) {
        cells.push_back(cell.asString());
    }
    EXPECT_THAT(cells, Contains(HasSubstr("front.thermal_zone[1]")));
    EXPECT_THAT(cells, Contains(HasSubstr("\"bord\"; the nearest is \"board\"")));
}

TEST(KelvosimReportTest, writesAllWhenAnExpectationFails) {
    const Replay replay("hello", "0.35, 500]", "0.35, 1500]", 1);
    EXPECT_THAT(replay.output(), AllOf(HasSubstr("FAILED: expect[1]: at 120 s: level 5"),
                                       HasSubstr("board 39.200 × 0.35 + 0.500")));
    EXPECT_EQ(replay.lastEvent(), "end");
    EXPECT_GT(replay.trace()["traceEvents"].size(), 0U);
    const Json::Value answer =
            ask(replay,
                "{text: [...document.querySelectorAll('#expectations tr, #extremes .bad')]"
                ".map(one => one.textContent)}");
    EXPECT_THAT(answer["text"][0].asString(), HasSubstr("2 failed"));
    EXPECT_THAT(answer["text"][3].asString(), HasSubstr("failed08:02:00expect[1]"));
}

TEST(KelvosimReportTest, comparesWithEveryOtherConfiguration) {
    const Replay replay("tuning");
    const auto file = [&](const std::string& name) { return replay.path("scenario/" + name); };
    Program::run("kelvosim", {"replay", file("scenario.json"), "--report", replay.page(),
                              "--against", file("fitted.json"), "--against", file("kelvo.json")});
    const Json::Value answer =
            ask(replay,
                "{text: [...document.querySelectorAll('#comparison tr, #comparison h2 + p')]"
                ".map(one => one.textContent), plots: document.getElementById('plots')"
                ".textContent}");
    std::vector<std::string> rows;
    for (const Json::Value& row : answer["text"]) {
        rows.push_back(row.asString());
    }
    EXPECT_THAT(rows, Contains(HasSubstr("model back08:00:0032.90032.592-0.308")));
    EXPECT_THAT(rows, Contains(HasSubstr("back against lab-back0.1780.52008:10:000.0230.038")));
    EXPECT_THAT(rows, Contains(HasSubstr("Identical: shell temperature, ")));
    EXPECT_THAT(answer["plots"].asString(), AllOf(HasSubstr("level′"), HasSubstr("status″")));
}

TEST(KelvosimReportTest, isNoBlankPage) {
    const Replay replay("hello");
    const auto pictureSize = [&](const std::string& page) {
        browse(replay, page, "--screenshot=" + replay.path("picture.png"));
        return std::filesystem::file_size(replay.path("picture.png"));
    };
    EXPECT_GT(pictureSize("file://" + replay.page()), 8 * pictureSize("about:blank"));
}

TEST(KelvosimPerfettoTest, holdsTheReplaysFigures) {
    const Replay replay("scenes");
    const Json::Value events = replay.trace()["traceEvents"];
    std::map<std::string, std::map<int64_t, int32_t>> counters;
    std::map<int, int64_t> sliceEnds;  // by track
    std::map<std::string, int> phases;
    int64_t last = 0;
    int notified = 0;
    for (const Json::Value& event : events) {
        const std::string phase = event["ph"].asString();
        ++phases[phase];
        if (phase == "M") {
            continue;
        }
        const int64_t time = event["ts"].asInt64();
        EXPECT_GE(time, last);
        last = time;
        if (phase == "C") {
            counters[event["name"].asString()][time / 1000] =
                    static_cast<int32_t>(std::lround(event["args"].begin()->asDouble() * 1000));
        } else if (phase == "X") {
            int64_t& end = sliceEnds[event["tid"].asInt()];
            EXPECT_GE(time, end) << event["name"].asString();
            EXPECT_GT(event["dur"].asInt64(), 0) << event["name"].asString();
            end = time + event["dur"].asInt64();
        } else {
            EXPECT_EQ(phase, "i");
            notified += event["name"].asString().starts_with("notify_") ? 1 : 0;
        }
    }
    EXPECT_EQ(notified, replay.notifications());
    EXPECT_EQ(phases.size(), 4U);
    EXPECT_GE(sliceEnds.size(), 3U) << "scene, level and status";
    for (const auto& [track, end] : sliceEnds) {
        EXPECT_EQ(end, sliceEnds.begin()->second) << "states last to the end";
    }
    const auto writes = replay.writes();
    const auto& front = counters.at("front");
    for (const auto& [timeMs, temp] : writes.at(0)) {
        EXPECT_EQ(std::prev(front.upper_bound(timeMs))->second, temp) << timeMs;
    }
    EXPECT_GE(counters.size(), 4U) << "and the zones";
}
