#include "sim/scenario/JsonPlace.h"

#include <json/reader.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "common/JsonText.h"
#include "common/NearestName.h"
#include "config/JsonNesting.h"
#include "sim/scenario/Scenario.h"

namespace sim {

namespace {

constexpr double kLongestSeconds = 1e9;

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string range(int64_t least, int64_t most) {
    return "expected a whole number from " + std::to_string(least) + " to " + std::to_string(most);
}

/** From jsoncpp's "* Line 3, Column 5\n  Missing ',' …" to a place and a problem. */
[[noreturn]] void failWithReport(const std::string& report, const std::string& file) {
    const size_t lineEnd = report.find('\n');
    std::string place = report.substr(0, lineEnd);
    std::string problem = lineEnd == std::string::npos ? "" : report.substr(lineEnd + 1);
    problem = problem.substr(0, problem.find('\n'));
    place.erase(0, std::min(place.find_first_not_of("* "), place.size()));
    problem.erase(0, std::min(problem.find_first_not_of(' '), problem.size()));
    for (const auto& [from, to] : {std::pair{"Line", "line"}, std::pair{"Column", "column"}}) {
        if (const size_t at = place.find(from); at != std::string::npos) {
            place.replace(at, std::string_view(from).size(), to);
        }
    }
    throw ScenarioError("not JSON: " + problem, file, place);
}

}  // namespace

Json::Value parseJson(std::string_view text, const std::string& file) {
    if (const size_t tooDeep = kelvo::findTooDeepJson(text); tooDeep != text.npos) {
        const common::TextPlace place = common::placeIn(text, tooDeep);
        throw ScenarioError(
                std::string("not JSON: ") + kelvo::kTooDeepJson, file,
                "line " + std::to_string(place.line) + ", column " + std::to_string(place.column));
    }
    Json::CharReaderBuilder builder;
    builder["rejectDupKeys"] = true;
    builder["failIfExtra"] = true;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    std::string report;
    bool good = false;
    try {
        good = reader->parse(text.data(), text.data() + text.size(), &root, &report);
    } catch (const std::exception& error) {
        throw ScenarioError(std::string("not JSON: ") + error.what(), file, "");
    }
    if (!good) {
        failWithReport(report, file);
    }
    return root;
}

JsonPlace::JsonPlace(const Json::Value& value, std::string file, std::string path)
      : mValue(&value), mFile(std::move(file)), mPath(std::move(path)) {}

void JsonPlace::fail(const std::string& problem) const {
    throw ScenarioError(problem, mFile, mPath);
}

void JsonPlace::onlyMembers(std::initializer_list<std::string_view> known) const {
    const std::vector<std::string> names(known.begin(), known.end());
    for (const auto& [name, member] : members()) {
        if (std::ranges::find(names, name) == names.end()) {
            member.fail("unknown member" + common::suggestion(name, names));
        }
    }
}

std::optional<JsonPlace> JsonPlace::find(std::string_view name) const {
    if (!isObject()) {
        fail("expected an object");
    }
    const Json::Value* member = mValue->find(name.data(), name.data() + name.size());
    if (member == nullptr) {
        return std::nullopt;
    }
    return JsonPlace(*member, mFile, (mPath.empty() ? "" : mPath + ".") + std::string(name));
}

JsonPlace JsonPlace::need(std::string_view name) const {
    auto member = find(name);
    if (!member) {
        fail("the member \"" + std::string(name) + "\" is missing");
    }
    return *member;
}

std::vector<std::pair<std::string, JsonPlace>> JsonPlace::members() const {
    if (!isObject()) {
        fail("expected an object");
    }
    std::vector<std::pair<std::string, JsonPlace>> result;
    for (const std::string& name : mValue->getMemberNames()) {
        result.emplace_back(name, need(name));
    }
    return result;
}

std::vector<JsonPlace> JsonPlace::elements() const {
    if (!isArray()) {
        fail("expected an array");
    }
    std::vector<JsonPlace> result;
    for (Json::ArrayIndex i = 0; i < mValue->size(); ++i) {
        result.emplace_back((*mValue)[i], mFile, mPath + "[" + std::to_string(i) + "]");
    }
    return result;
}

std::string JsonPlace::text() const {
    if (!mValue->isString()) {
        fail("expected a text");
    }
    return mValue->asString();
}

bool JsonPlace::boolean() const {
    if (!mValue->isBool()) {
        fail("expected true or false");
    }
    return mValue->asBool();
}

double JsonPlace::number() const {
    // jsoncpp reads 1e999 as infinity.
    if (!mValue->isNumeric() || !std::isfinite(mValue->asDouble())) {
        fail("expected a number");
    }
    return mValue->asDouble();
}

int64_t JsonPlace::whole(int64_t least, int64_t most, const std::string& expected) const {
    if (!mValue->isNumeric() || !mValue->isInt64() || mValue->asInt64() < least ||
        mValue->asInt64() > most) {
        fail(expected.empty() ? range(least, most) : expected);
    }
    return mValue->asInt64();
}

int32_t JsonPlace::int32(const std::string& expected) const {
    using Limits = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(whole(Limits::min(), Limits::max(), expected));
}

int64_t JsonPlace::milliseconds() const {
    const double seconds = mValue->isNumeric() ? mValue->asDouble() : -1;
    if (!(seconds >= 0 && seconds <= kLongestSeconds)) {
        fail("expected seconds from 0 to 1000000000");
    }
    return std::llround(seconds * 1000);
}

std::string JsonPlace::hexBytes() const {
    std::string digits = text();
    std::erase(digits, ' ');
    std::string bytes;
    for (size_t i = 0; i < digits.size(); i += 2) {
        const int high = hexDigit(digits[i]);
        const int low = i + 1 < digits.size() ? hexDigit(digits[i + 1]) : -1;
        if (high < 0 || low < 0) {
            fail("expected an even number of hexadecimal digits");
        }
        bytes.push_back(static_cast<char>(high * 16 + low));
    }
    return bytes;
}

}  // namespace sim
