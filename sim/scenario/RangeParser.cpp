#include "sim/scenario/RangeParser.h"

#include <cmath>

#include "sim/scenario/ShortNumber.h"

namespace sim {

namespace {

constexpr double kHighestCelsius = 1000;
constexpr double kMilli = 1000;

int64_t read(const JsonPlace& place, Scale scale) {
    if (scale == Scale::WHOLE) {
        return place.int32();
    }
    const double celsius = place.number();
    if (std::abs(celsius) > kHighestCelsius) {
        place.fail("expected °C from -1000 to 1000");
    }
    return std::llround(celsius * kMilli);
}

std::string textOf(int64_t value, Scale scale) {
    return scale == Scale::CELSIUS ? shortThousandths(value) : std::to_string(value);
}

const char* unitOf(Scale scale) {
    return scale == Scale::CELSIUS ? " °C" : "";
}

TextRange parsePair(const JsonPlace& place, Scale scale) {
    const auto ends = place.elements();
    if (ends.size() != 2) {
        place.fail("expected [least, most]");
    }
    const ValueRange range{read(ends[0], scale), read(ends[1], scale)};
    if (range.least > range.most) {
        place.fail("expected [least, most], the lower one first");
    }
    return {range,
            " " + textOf(range.least, scale) + " to " + textOf(range.most, scale) + unitOf(scale)};
}

}  // namespace

TextRange parseRange(const JsonPlace& place, Scale scale) {
    if (place.isArray()) {
        return parsePair(place, scale);
    }
    if (scale == Scale::CELSIUS) {
        place.fail("expected [least, most] in °C");  // to the thousandth it is never one number
    }
    const int64_t value = read(place, scale);
    return {{value, value}, " " + textOf(value, scale)};
}

TextRange parseAbove(const JsonPlace& place, Scale scale) {
    const int64_t bound = read(place, scale);
    ValueRange range;
    range.least = bound + 1;
    return {range, " above " + textOf(bound, scale) + unitOf(scale)};
}

TextRange parseBelow(const JsonPlace& place, Scale scale) {
    const int64_t bound = read(place, scale);
    ValueRange range;
    range.most = bound - 1;
    return {range, " below " + textOf(bound, scale) + unitOf(scale)};
}

}  // namespace sim
