#include "report/ReportData.h"

#include <algorithm>
#include <deque>
#include <optional>

namespace {

// Of one series: more than two days at a point a second make a page that browsers choke on.
constexpr size_t kMostPoints = 200000;

Json::Int64 number(int64_t value) {
    return value;
}

/** All times at which one of the lists' figures changes. */
class TimeUnion {
  public:
    void add(const Series& series) {
        for (const Series::Point& point : series.points()) {
            mTimes.push_back(point.timeMs);
        }
        // Series of a plant change at the same seconds: do not keep each second twenty times.
        if (mTimes.size() > mDistinct * 2 + kSmall) {
            settle();
        }
    }
    RowTimes take() {
        settle();
        return std::move(mTimes);
    }

  private:
    static constexpr size_t kSmall = 10000;

    void settle() {
        std::sort(mTimes.begin(), mTimes.end());
        mTimes.erase(std::unique(mTimes.begin(), mTimes.end()), mTimes.end());
        mDistinct = mTimes.size();
    }

    RowTimes mTimes;
    size_t mDistinct = 0;
};

/** The recording's plotted series under the names that they have in the page. */
std::vector<std::pair<const char*, std::vector<const Series*>>> plottedSeries(
        const Recording& recording) {
    const auto pointers = [](const std::vector<Series>& list) {
        std::vector<const Series*> result;
        for (const Series& series : list) {
            result.push_back(&series);
        }
        return result;
    };
    std::vector<const Series*> models;
    for (const auto& [name, series] : recording.models) {
        models.push_back(&series);
    }
    return {{"zones", pointers(recording.zones)},
            {"models", models},
            {"shell", {&recording.shell}},
            {"plantNodes", pointers(recording.plantNodes)},
            {"ambient", {&recording.ambient, &recording.trueAmbient}},
            {"heat", pointers(recording.heat)},
            {"heatSamples", pointers(recording.heatSamples)},
            {"level", {&recording.level}},
            {"status", {&recording.status}}};
}

/** The figures of another run that are plotted. */
std::vector<Series*> plottedSeries(ComparedRun& run) {
    return {&run.outcome.shell, &run.outcome.level, &run.outcome.status};
}

/** The other runs with no more points than the page takes. */
std::vector<ComparedRun> shownRuns(std::vector<ComparedRun> others) {
    for (ComparedRun& other : others) {
        for (Series* series : plottedSeries(other)) {
            if (series->points().size() > kMostPoints) {
                *series = series->thinned(kMostPoints);
            }
        }
    }
    return others;
}

Json::Value infoData(const RunInfo& info) {
    Json::Value data(Json::objectValue);
    data["name"] = info.name;
    data["scenario"] = info.scenario;
    data["configuration"] = info.configuration;
    data["configVersion"] = info.configVersion;
    data["platform"] = info.platform;
    data["project"] = info.project;
    data["startMs"] = number(info.startMs);
    data["durationMs"] = number(info.durationMs);
    return data;
}

Json::Value bandData(const Band& band) {
    Json::Value data(Json::arrayValue);
    for (const Band::Change& change : band.changes()) {
        Json::Value entry(Json::arrayValue);
        entry.append(number(change.timeMs));
        entry.append(change.text);
        data.append(entry);
    }
    return data;
}

Json::Value marksData(const std::vector<Mark>& marks) {
    Json::Value data(Json::arrayValue);
    for (const Mark& mark : marks) {
        Json::Value entry(Json::arrayValue);
        entry.append(number(mark.timeMs));
        entry.append(static_cast<int>(mark.kind));
        entry.append(mark.text);
        data.append(entry);
    }
    return data;
}

Json::Value notificationsData(const std::vector<Notification>& notifications) {
    Json::Value data(Json::arrayValue);
    for (const Notification& notification : notifications) {
        Json::Value entry(Json::arrayValue);
        entry.append(number(notification.timeMs));
        entry.append(notification.listener);
        entry.append(notification.kind);
        Json::Value values(Json::arrayValue);
        for (const auto& [name, value] : notification.values) {
            Json::Value pair(Json::arrayValue);
            pair.append(name);
            pair.append(value);
            values.append(pair);
        }
        entry.append(values);
        data.append(entry);
    }
    return data;
}

}  // namespace

Json::Value seriesData(const Series& series, const RowTimes& times) {
    Json::Value data(Json::objectValue);
    data["name"] = series.name();
    data["unit"] = series.unit();
    data["column"] = columnOf(series, times);
    return data;
}

Json::Value timesData(const RowTimes& times) {
    Json::Value data(Json::objectValue);
    data["count"] = Json::UInt64{times.size()};
    data["steps"] = columnOf(times);
    return data;
}

Json::Value reportData(const Recording& recording, const std::vector<ComparedRun>& others) {
    auto plotted = plottedSeries(recording);
    std::deque<Series> thinned;
    TimeUnion allTimes;
    for (auto& [name, list] : plotted) {
        for (const Series*& series : list) {
            if (series->points().size() > kMostPoints) {
                series = &thinned.emplace_back(series->thinned(kMostPoints));
            }
            allTimes.add(*series);
        }
    }
    std::vector<ComparedRun> shown = shownRuns(others);
    for (ComparedRun& other : shown) {
        for (const Series* series : plottedSeries(other)) {
            allTimes.add(*series);
        }
    }
    const RowTimes times = allTimes.take();

    Json::Value data(Json::objectValue);
    data["thinned"] = thinned.empty() ? 0U : static_cast<Json::UInt>(kMostPoints);
    data["info"] = infoData(recording.info);
    data["times"] = timesData(times);
    for (const auto& [name, list] : plotted) {
        Json::Value& group = data[name] = Json::Value(Json::arrayValue);
        for (const Series* series : list) {
            group.append(seriesData(*series, times));
        }
    }
    data["scene"] = bandData(recording.scene);
    data["monitoring"] = bandData(recording.monitoring);
    data["marks"] = marksData(recording.marks);
    data["notifications"] = notificationsData(recording.notifications);
    data["errors"] = errorsData(modelErrors(recording));
    data["others"] = Json::Value(Json::arrayValue);
    for (const ComparedRun& other : shown) {
        data["others"].append(comparisonData(other, times));
    }
    addReasons(data, recording);
    return data;
}
