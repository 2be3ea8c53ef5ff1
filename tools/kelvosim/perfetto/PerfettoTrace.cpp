#include "perfetto/PerfettoTrace.h"

#include <json/value.h>
#include <json/writer.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <deque>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/JsonText.h"

namespace {

constexpr int64_t kMicrosPerMilli = 1000;
// Of one counter: the viewer takes minutes for a day of sensors at a point a second.
constexpr size_t kMostPoints = 20000;

/** The viewer groups tracks by process. */
enum Process { ZONES = 1, SHELL, HEAT, PLANT, STATE };
/** Tracks of STATE. */
enum Track { SCENE = 1, LEVEL, STATUS, MONITORING, NOTIFICATIONS, ACTIONS, DAEMON };

std::string quoted(const std::string& text) {
    return Json::valueToQuotedString(text.c_str());
}

std::string thousandth(int32_t value) {
    std::array<char, 24> text;
    std::snprintf(text.data(), text.size(), "%.3f", value / 1000.0);
    return text.data();
}

/** The events of a trace in any order; written ascending by time. */
class EventList {
  public:
    void addMetadata(const char* name, int pid, int tid, const std::string& value) {
        mMetadata.push_back(R"({"ph":"M","name":")" + std::string(name) + "\"" + place(pid, tid) +
                            R"(,"args":{"name":)" + quoted(value) + "}}");
    }

    /** m°C become °C. */
    void addCounter(Process process, const Series& figures) {
        const Series& series = mSeries.emplace_back(figures.thinned(kMostPoints));
        const bool isTemp = series.unit() == "m°C";
        const std::string head =
                "\"ph\":\"C\",\"name\":" + quoted(ownName(process, series.name())) +
                ",\"pid\":" + std::to_string(process) + ",\"args\":{" +
                quoted(isTemp ? "°C" : series.unit()) + ":";
        mCounters.push_back({head, &series, isTemp});
        for (size_t i = 0; i < series.points().size(); ++i) {
            if (series.points()[i].value) {
                mEvents.push_back({series.points()[i].timeMs, mCounters.size() - 1, i});
            }
        }
    }

    void addSlice(Track track, int64_t startMs, int64_t endMs, const std::string& name) {
        addText(startMs, "\"ph\":\"X\",\"name\":" + quoted(name) + place(STATE, track) +
                                 ",\"dur\":" + std::to_string((endMs - startMs) * kMicrosPerMilli));
    }

    void addInstant(Track track, int64_t timeMs, const std::string& name,
                    const Json::Value& arguments) {
        addText(timeMs, "\"ph\":\"i\",\"s\":\"t\",\"name\":" + quoted(name) + place(STATE, track) +
                                ",\"args\":" + common::compactJson(arguments));
    }

    void write(std::ostream& stream) {
        std::stable_sort(mEvents.begin(), mEvents.end(),
                         [](const Entry& a, const Entry& b) { return a.timeMs < b.timeMs; });
        stream << "{\"displayTimeUnit\":\"ms\",\"traceEvents\":[";
        const char* separator = "\n";
        for (const std::string& line : mMetadata) {
            stream << separator << line;
            separator = ",\n";
        }
        for (const Entry& entry : mEvents) {
            stream << separator << "{\"ts\":" << entry.timeMs * kMicrosPerMilli << ',';
            writeBody(stream, entry);
            stream << '}';
        }
        stream << "\n]}\n";
    }

  private:
    struct Counter {
        std::string head;
        const Series* series;
        bool isTemp;
    };
    struct Entry {
        int64_t timeMs;
        size_t source;  // number of the counter, or kText
        size_t place;   // of the point, or of the text
    };
    static constexpr size_t kText = SIZE_MAX;

    /** Counters of one name in one process would be one track. */
    std::string ownName(Process process, const std::string& name) {
        std::string own = name;
        for (int number = 2; !mNames.insert({process, own}).second; ++number) {
            own = name + " (" + std::to_string(number) + ")";
        }
        return own;
    }

    static std::string place(int pid, int tid) {
        return ",\"pid\":" + std::to_string(pid) + ",\"tid\":" + std::to_string(tid);
    }

    void addText(int64_t timeMs, std::string text) {
        mEvents.push_back({timeMs, kText, mTexts.size()});
        mTexts.push_back(std::move(text));
    }

    void writeBody(std::ostream& stream, const Entry& entry) const {
        if (entry.source == kText) {
            stream << mTexts[entry.place];
            return;
        }
        const Counter& counter = mCounters[entry.source];
        const int32_t value = counter.series->points()[entry.place].value.value_or(0);
        stream << counter.head << (counter.isTemp ? thousandth(value) : std::to_string(value))
               << '}';
    }

    std::vector<std::string> mMetadata;
    std::set<std::pair<Process, std::string>> mNames;
    std::deque<Series> mSeries;
    std::vector<Counter> mCounters;
    std::vector<std::string> mTexts;
    std::vector<Entry> mEvents;
};

void addNames(EventList& events, const Recording& recording) {
    const std::string name =
            recording.info.name.empty() ? recording.info.scenario : recording.info.name;
    const std::vector<std::pair<Process, std::string>> kProcesses{
            {ZONES, "zones"}, {SHELL, "shell"}, {HEAT, "heat"}, {PLANT, "plant"}, {STATE, name}};
    for (const auto& [process, text] : kProcesses) {
        events.addMetadata("process_name", process, 0, text);
    }
    const std::vector<std::pair<Track, std::string>> kTracks{{SCENE, "scene"},
                                                             {LEVEL, "level"},
                                                             {STATUS, "status"},
                                                             {MONITORING, "monitoring"},
                                                             {NOTIFICATIONS, "notifications"},
                                                             {ACTIONS, "actions"},
                                                             {DAEMON, "daemon"}};
    for (const auto& [track, text] : kTracks) {
        events.addMetadata("thread_name", STATE, track, text);
    }
}

void addCounters(EventList& events, const Recording& recording) {
    for (const Series& zone : recording.zones) {
        events.addCounter(ZONES, zone);
    }
    events.addCounter(SHELL, recording.shell);
    for (const auto& [index, output] : recording.passes.outputs()) {
        events.addCounter(SHELL, output.value);
    }
    for (const Series& component : recording.heat) {
        events.addCounter(HEAT, component);
    }
    for (const Series& node : recording.plantNodes) {
        events.addCounter(PLANT, node);
    }
}

void addBand(EventList& events, Track track, const Band& band, int64_t endMs) {
    const auto& changes = band.changes();
    for (size_t i = 0; i < changes.size(); ++i) {
        const int64_t end = i + 1 < changes.size() ? changes[i + 1].timeMs : endMs;
        if (!changes[i].text.empty()) {
            events.addSlice(track, changes[i].timeMs, end, changes[i].text);
        }
    }
}

Band asBand(const Series& series) {
    Band band(series.name());
    for (const Series::Point& point : series.points()) {
        band.add(point.timeMs,
                 point.value ? series.name() + " " + std::to_string(*point.value) : std::string());
    }
    return band;
}

void addSlices(EventList& events, const Recording& recording) {
    const int64_t end = recording.info.durationMs;
    addBand(events, SCENE, recording.scene, end);
    addBand(events, LEVEL, asBand(recording.level), end);
    addBand(events, STATUS, asBand(recording.status), end);
    addBand(events, MONITORING, recording.monitoring, end);
}

void addInstants(EventList& events, const Recording& recording) {
    for (const Mark& mark : recording.marks) {
        const Track track = mark.kind == Mark::Kind::ACTION ? ACTIONS : DAEMON;
        events.addInstant(track, mark.timeMs, mark.text, Json::objectValue);
    }
    for (const Notification& notification : recording.notifications) {
        Json::Value arguments(Json::objectValue);
        arguments["listener"] = notification.listener;
        for (const auto& [name, value] : notification.values) {
            arguments[name] = value;
        }
        events.addInstant(NOTIFICATIONS, notification.timeMs, notification.kind, arguments);
    }
}

}  // namespace

void writePerfettoTrace(std::ostream& stream, const Recording& recording) {
    EventList events;
    addNames(events, recording);
    addCounters(events, recording);
    addSlices(events, recording);
    addInstants(events, recording);
    events.write(stream);
}
