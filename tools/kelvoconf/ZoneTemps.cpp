#include "ZoneTemps.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include "Files.h"
#include "sim/scenario/Trace.h"
#include "sim/scenario/TraceCheck.h"

namespace kelvoconf {

namespace {

using kelvo::lint::ZoneSample;
using kelvo::lint::ZoneSamples;
using Visitor = std::function<void(const ZoneSample&)>;

/** The rows of a trace as samples: an empty cell leaves its zone as it was. */
class TraceSamples {
  public:
    TraceSamples(std::string file, const std::vector<ListedZone>& zones) : mFile(std::move(file)) {
        for (size_t number = 0; number < zones.size(); ++number) {
            mNumbers[zones[number].type] = static_cast<int32_t>(number);
        }
    }

    void walk(const Visitor& visit) {
        try {
            readRows(visit);
        } catch (const sim::ScenarioError& error) {
            throw Failure(error.what());
        }
    }

    void checkHeader() const {
        try {
            sim::TraceReader reader(mFile);
        } catch (const sim::ScenarioError& error) {
            throw Failure(error.what());
        }
    }

  private:
    void readRows(const Visitor& visit) {
        sim::TraceReader reader(mFile);
        sim::TraceValues values;
        ZoneSample sample;
        for (sim::TraceRow row; reader.next(row);) {
            for (const sim::ZoneChange& change : row.zones) {
                set(sample, reader.zoneTypes()[static_cast<size_t>(change.index)], change.temp);
            }
            values.see(row, reader.line());
            sample.place = mFile + ": line " + std::to_string(reader.line());
            visit(sample);
        }
        warnOnce(values.warnings(mFile, reader.zoneTypes()));
    }

    void set(ZoneSample& sample, const std::string& type, std::optional<int32_t> temp) const {
        const auto number = mNumbers.find(type);
        if (!temp) {
            sample.byType.erase(type);
        } else {
            sample.byType[type] = *temp;
        }
        if (number != mNumbers.end() && temp) {
            sample.byNumber[number->second] = *temp;
        } else if (number != mNumbers.end()) {
            sample.byNumber.erase(number->second);
        }
    }

    void warnOnce(const std::vector<sim::ScenarioWarning>& warnings) {
        for (const sim::ScenarioWarning& warning : warnings) {
            if (!mHasWarned) {
                warn(warning.what, warning.place);
            }
        }
        mHasWarned = true;
    }

    const std::string mFile;
    std::map<std::string, int32_t> mNumbers;  // of the phone's zones; of a shared type the last
    bool mHasWarned = false;
};

}  // namespace

ZoneSamples samplesOf(const std::vector<ListedZone>& zones, const std::string& place) {
    ZoneSample sample{place, {}, {}};
    for (size_t number = 0; number < zones.size(); ++number) {
        const auto& [type, temp] = zones[number];
        sample.byType.erase(type);  // of a shared type the last zone counts
        if (temp) {
            sample.byType[type] = *temp;
            sample.byNumber[static_cast<int32_t>(number)] = *temp;
        }
    }
    return sample.byNumber.empty() ? ZoneSamples()
                                   : [sample](const Visitor& visit) { visit(sample); };
}

ZoneSamples samplesOfTrace(const std::string& file, const std::vector<ListedZone>& zones) {
    const auto samples = std::make_shared<TraceSamples>(file, zones);
    samples->checkHeader();
    return [samples](const Visitor& visit) { samples->walk(visit); };
}

}  // namespace kelvoconf
