#include "LabRecord.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "CsvReader.h"
#include "common/NearestName.h"

namespace {

// What thermocouples at a phone can read; beyond it the file is in another unit.
constexpr double kLeastTemp = -60;  // °C
constexpr double kMostTemp = 200;
constexpr double kHalfDay = 43200;  // s
constexpr double kDay = 86400;

constexpr char kPrefix[] = "lab-";
constexpr char kNameLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.-";

using Cells = std::vector<std::string>;

bool isModelName(const std::string& name) {
    return !name.empty() && name.find_first_not_of(kNameLetters) == std::string::npos;
}

/** A file's header, if it has one, and where in each line the times and the models stand. */
class Columns {
  public:
    Columns(const CsvReader& reader, const Cells& first, const LabLayout& layout)
          : mReader(reader), mCount(first.size()) {
        mHasHeader = std::ranges::none_of(
                first, [](const std::string& cell) { return parseLabTime(cell).has_value(); });
        mNames = mHasHeader ? first : Cells();
        mTime = find(layout.time);
        if (layout.models.empty()) {
            takeHeader();
        }
        size_t next = 0;
        for (const std::string& model : layout.models) {
            take(model, next);
        }
        if (mModels.empty()) {
            mReader.fail("there is no column of temperatures");
        }
    }

    bool hasHeader() const { return mHasHeader; }
    size_t count() const { return mCount; }
    size_t time() const { return mTime; }
    const std::vector<std::pair<std::string, size_t>>& models() const { return mModels; }

  private:
    size_t find(const std::string& wanted) const {
        const auto named = std::ranges::find(mNames, wanted);
        if (named != mNames.end()) {
            return static_cast<size_t>(named - mNames.begin());
        }
        size_t number = 0;
        const char* const end = wanted.data() + wanted.size();
        if (std::from_chars(wanted.data(), end, number).ptr != end || wanted.empty()) {
            mReader.fail("there is no column \"" + wanted + "\"" +
                         common::suggestion(wanted, mNames));
        }
        if (number < 1 || number > mCount) {
            mReader.fail("there is no column " + wanted + " among " + std::to_string(mCount));
        }
        return number - 1;
    }

    void add(const std::string& model, size_t column) {
        if (!isModelName(model)) {
            mReader.failAt(column, "\"" + model + "\" is no name of a model: name it with --model");
        }
        if (column == mTime) {
            mReader.failAt(column, "the model \"" + model + "\" would have the times");
        }
        if (!mTaken.insert(model).second) {
            mReader.failAt(column, "the model \"" + model + "\" stands twice");
        }
        mModels.emplace_back(model, column);
    }

    void takeHeader() {
        if (!mHasHeader) {
            mReader.fail("there is no header: name the models of the columns with --model");
        }
        for (size_t column = 0; column < mCount; ++column) {
            if (column != mTime) {
                const std::string& name = mNames[column];
                add(name.starts_with(kPrefix) ? name.substr(sizeof(kPrefix) - 1) : name, column);
            }
        }
    }

    void take(const std::string& model, size_t& next) {
        const size_t equals = model.find('=');
        if (equals != std::string::npos) {
            return add(model.substr(0, equals), find(model.substr(equals + 1)));
        }
        next += next == mTime ? 1 : 0;
        if (next >= mCount) {
            mReader.fail("no column is left for the model \"" + model + "\"");
        }
        add(model, next++);
    }

    const CsvReader& mReader;
    const size_t mCount;
    bool mHasHeader = false;
    Cells mNames;
    size_t mTime = 0;
    std::set<std::string> mTaken;
    std::vector<std::pair<std::string, size_t>> mModels;  // with their columns
};

/** Appends the time of a line. Times of day go on after midnight. */
void addTime(const CsvReader& reader, size_t column, const std::string& cell, LabRecord& record) {
    const auto time = parseLabTime(cell);
    if (!time) {
        reader.failAt(column, "\"" + cell + "\" is no time");
    }
    if (record.times.empty()) {
        record.kind = time->kind;
    } else if (time->kind != record.kind) {
        reader.failAt(column, "\"" + cell + "\" is another kind of time than those before");
    }
    double seconds = time->seconds;
    const double last = record.times.empty() ? seconds : record.times.back();
    while (record.kind == TimeKind::OF_DAY && seconds < last - kHalfDay) {
        seconds += kDay;
    }
    if (seconds < last) {
        reader.failAt(column, "the time goes back: \"" + cell + "\"");
    }
    record.times.push_back(seconds);
}

/** The cell without its unit. */
std::string withoutUnit(std::string cell) {
    for (const char* unit : {"\u00b0C",
                             "\xb0"
                             "C",
                             "C"}) {
        if (cell.ends_with(unit)) {
            cell.resize(cell.size() - std::string(unit).size());
            break;
        }
    }
    cell.resize(cell.find_last_not_of(' ') + 1);
    return cell;
}

/** What loggers write where they have no reading. */
bool isMissing(const std::string& cell) {
    static const std::set<std::string> kMissing = {"",    "-",    "--",   "---", "NaN",
                                                   "nan", "null", "open", "OL",  "OPEN"};
    return kMissing.contains(cell);
}

std::optional<double> readTemp(const CsvReader& reader, size_t column, const std::string& cell) {
    if (isMissing(cell)) {
        return std::nullopt;
    }
    const auto temp = parseDecimal(withoutUnit(cell));
    if (!temp) {
        reader.failAt(column, "\"" + cell + "\" is no temperature");
    }
    if (*temp < kLeastTemp || *temp > kMostTemp) {
        reader.failAt(column, "\"" + cell + "\" is no temperature in \u00b0C, -60 to 200,");
    }
    return temp;
}

void addLine(const CsvReader& reader, const Columns& columns, const Cells& cells,
             LabRecord& record) {
    if (cells.size() != columns.count()) {
        reader.fail("expected " + std::to_string(columns.count()) + " cells, found " +
                    std::to_string(cells.size()));
    }
    addTime(reader, columns.time(), cells[columns.time()], record);
    for (size_t i = 0; i < record.columns.size(); ++i) {
        const size_t column = columns.models()[i].second;
        record.columns[i].temps.push_back(readTemp(reader, column, cells[column]));
    }
}

}  // namespace

LabRecord readLabRecord(const std::string& file, const LabLayout& layout) {
    CsvReader reader(file);
    Cells cells;
    if (!reader.next(cells)) {
        reader.fail("there is nothing in it");
    }
    const Columns columns(reader, cells, layout);
    LabRecord record;
    for (const auto& [model, column] : columns.models()) {
        record.columns.push_back({model, {}});
    }
    if (!columns.hasHeader()) {
        addLine(reader, columns, cells, record);
    }
    while (reader.next(cells)) {
        addLine(reader, columns, cells, record);
    }
    if (record.times.size() < 2) {
        reader.fail("there are fewer than two readings");
    }
    return record;
}
