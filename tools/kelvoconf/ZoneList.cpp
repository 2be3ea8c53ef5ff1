#include "ZoneList.h"

#include <json/reader.h>
#include <json/value.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <sstream>

#include "Files.h"

namespace kelvoconf {

namespace {

using Zones = std::vector<ListedZone>;

constexpr size_t kLongestType = 255;  // bytes; the kernel's own are shorter than 20
constexpr char kGap[] = "  ";         // between the columns of a table

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        line.erase(line.find_last_not_of(" \t\r") + 1);
        if (!line.empty() && line.front() != '#') {
            lines.push_back(line);
        }
    }
    return lines;
}

bool isType(const std::string& type) {
    return type.size() <= kLongestType && std::ranges::none_of(type, [](char c) {
               return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
           });
}

std::optional<int32_t> numberIn(const std::string& text) {
    int32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && at == end ? std::optional(number) : std::nullopt;
}

/** Where the column "type" of draft's table begins; none: the line is no heading of one. */
std::optional<size_t> typeColumn(const std::string& heading) {
    const size_t type = heading.find("type");
    const bool isHeading = heading.starts_with("zone ") && type != std::string::npos &&
                           heading.find("sample", type) != std::string::npos;
    return isHeading ? std::optional(type) : std::nullopt;
}

/** A row of draft's table; none when its number is not `number`. */
std::optional<ListedZone> rowZone(const std::string& row, size_t column, size_t number) {
    const std::string first = row.substr(0, row.find(' '));
    if (numberIn(first) != static_cast<int32_t>(number)) {
        return std::nullopt;
    }
    const std::string rest = row.size() > column ? row.substr(column) : "";
    const size_t end = std::min(rest.find(kGap), rest.size());
    const size_t sample = std::min(rest.find_first_not_of(' ', end), rest.size());
    const std::string next = rest.substr(sample, rest.find(' ', sample) - sample);
    return ListedZone{rest.substr(0, end), numberIn(next)};
}

std::optional<ListedZone> jsonZone(const std::string& line, size_t number) {
    Json::CharReaderBuilder builder;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value zone;
    if (!reader->parse(line.data(), line.data() + line.size(), &zone, nullptr) ||
        !zone.isObject() || !zone["type"].isString() || !zone["index"].isInt() ||
        zone["index"].asInt() != static_cast<int32_t>(number)) {
        return std::nullopt;
    }
    const Json::Value& sample = zone["sample"];
    return ListedZone{zone["type"].asString(),
                      sample.isInt() ? std::optional(sample.asInt()) : std::nullopt};
}

template <typename ReadLine>
std::optional<Zones> zonesOf(const std::vector<std::string>& lines, size_t first,
                             const ReadLine& readLine) {
    Zones zones;
    for (size_t i = first; i < lines.size(); ++i) {
        std::optional<ListedZone> zone = readLine(lines[i], i - first);
        if (!zone || !isType(zone->type)) {
            return std::nullopt;
        }
        zones.push_back(std::move(*zone));
    }
    return zones;
}

std::optional<Zones> parse(const std::vector<std::string>& lines) {
    if (lines.empty()) {
        return std::nullopt;
    }
    if (const auto column = typeColumn(lines.front())) {
        return zonesOf(lines, 1, [column](const std::string& line, size_t number) {
            return rowZone(line, *column, number);
        });
    }
    if (lines.front().front() == '{') {
        return zonesOf(lines, 0, jsonZone);
    }
    return zonesOf(lines, 0, [](const std::string& line, size_t) {
        return std::optional(ListedZone{line, std::nullopt});
    });
}

}  // namespace

std::vector<ListedZone> readZoneList(const std::string& text, const std::string& name) {
    std::optional<Zones> zones = parse(linesOf(text));
    if (!zones || zones->empty()) {
        throw Failure("no list of zones: " + name);
    }
    return std::move(*zones);
}

}  // namespace kelvoconf
