#include "sim/scenario/ShortNumber.h"

#include <array>
#include <cstdio>

namespace sim {

std::string shortNumber(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.12g", number);
    return text.data();
}

std::string shortThousandths(int64_t thousandths) {
    constexpr double kThousand = 1000;
    return shortNumber(static_cast<double>(thousandths) / kThousand);
}

}  // namespace sim
