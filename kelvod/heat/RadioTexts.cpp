#include "heat/RadioTexts.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <span>
#include <system_error>

namespace kelvo {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

struct Field {
    std::string_view label;  // with all that stands before the number
    int64_t* value;
};

/** Takes a number off the front of `text`; false when there is none. */
bool takeNumber(std::string_view& text, int64_t& value) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    // from_chars knows no plus sign.
    const size_t plus = text.starts_with('+') && !text.starts_with("+-") ? 1 : 0;
    const char* const end = text.data() + text.size();
    int64_t number = 0;
    const auto [rest, error] = std::from_chars(text.data() + plus, end, number);
    if (error == std::errc::invalid_argument) {
        return false;
    }
    if (error == std::errc::result_out_of_range) {
        number = text.starts_with('-') ? std::numeric_limits<int64_t>::min()
                                       : std::numeric_limits<int64_t>::max();
    }
    value = number;
    text.remove_prefix(static_cast<size_t>(rest - text.data()));
    return true;
}

/** Reads the fields in their order, up to the first that is not there; how many were read. */
int readFields(std::string_view text, std::span<const Field> fields) {
    int count = 0;
    for (const Field& field : fields) {
        if (!text.starts_with(field.label)) {
            break;
        }
        text.remove_prefix(field.label.size());
        if (!takeNumber(text, *field.value)) {
            break;
        }
        ++count;
    }
    return count;
}

/** As readFields() for 32-bit fields; those that are not read keep their values. */
template <size_t kCount>
int readInt32Fields(std::string_view text, const std::string_view (&labels)[kCount],
                    int32_t* const (&values)[kCount]) {
    int64_t numbers[kCount] = {};
    Field fields[kCount];
    for (size_t i = 0; i < kCount; ++i) {
        fields[i] = {labels[i], &numbers[i]};
    }
    const int count = readFields(text, fields);
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
        *values[i] = static_cast<int32_t>(numbers[i]);
    }
    return count;
}

void readLte(std::string_view text, CellularSignal& signal) {
    signal.connType = CellularSignal::kLte;
    readInt32Fields(text, {"connectState:", ",level:", ",rssi:", ",rssnr:", ",rsrq:", ",rsrp:"},
                    {&signal.connectState, &signal.level, &signal.rssi, &signal.rssnr, &signal.rsrq,
                     &signal.rsrp});
    for (int32_t* const figure : {&signal.ssSinr, &signal.ssRsrp, &signal.ssRsrq, &signal.csiSinr,
                                  &signal.csiRsrp, &signal.csiRsrq}) {
        *figure = CellularSignal::kNotReported;
    }
}

void readNr(std::string_view text, CellularSignal& signal) {
    signal.connType = CellularSignal::kNr;
    readInt32Fields(text,
                    {"connectState:", ",level:", ",ssSinr:", ",ssRsrp:", ",ssRsrq:", ",csiSinr:",
                     ",csiRsrp:", ",csiRsrq:"},
                    {&signal.connectState, &signal.level, &signal.ssSinr, &signal.ssRsrp,
                     &signal.ssRsrq, &signal.csiSinr, &signal.csiRsrp, &signal.csiRsrq});
}

int64_t wrappingSum(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
}

int64_t wrappingDifference(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) - static_cast<uint64_t>(b));
}

/** What Wi-Fi traffic costs at a strength of the signal. */
struct WifiCost {
    int32_t fromRssi;       // dBm
    int64_t bytesPerUnit;   // traffic that counts as one unit of energy
    float hotspotAddition;  // in the same unit
};
constexpr WifiCost kWifiCosts[] = {{-59, 5920, 190.0F},
                                   {-89, 4000, 250.0F},
                                   {-99, 3000, 300.0F},
                                   {std::numeric_limits<int32_t>::min(), 1500, 400.0F}};

const WifiCost& wifiCostAt(int32_t rssi) {
    return *std::ranges::find_if(kWifiCosts,
                                 [rssi](const WifiCost& cost) { return rssi >= cost.fromRssi; });
}

}  // namespace

CellularSignal parseCellularSignal(std::string_view text) {
    CellularSignal signal;
    if (text.find("ssRsrp") != std::string_view::npos) {
        readNr(text, signal);
    } else {
        readLte(text, signal);
    }
    return signal;
}

Traffic parseTraffic(std::string_view text) {
    Traffic traffic;
    const Field fields[] = {{"transmit:", &traffic.transmit},
                            {",receive:", &traffic.receive},
                            {",mobileTx:", &traffic.mobileTx},
                            {",mobileRx:", &traffic.mobileRx}};
    readFields(text, fields);
    return traffic;
}

int parseWifiSignal(std::string_view text, WifiSignal& signal) {
    return readInt32Fields(
            text,
            {"WifiState:", ",ApState:", ",linkSpeed:", ",frequency:", ",rssi:", ",generation:"},
            {&signal.wifiState, &signal.apState, &signal.linkSpeed, &signal.frequency, &signal.rssi,
             &signal.generation});
}

int64_t mobileTraffic(const Traffic& traffic) {
    return wrappingSum(traffic.mobileTx, traffic.mobileRx);
}

int64_t otherTraffic(const Traffic& traffic) {
    return wrappingDifference(wrappingSum(traffic.transmit, traffic.receive),
                              mobileTraffic(traffic));
}

float wifiEnergy(const WifiSignal& signal, int64_t bytes) {
    if (bytes < 1) {
        return 0.0F;
    }
    const WifiCost& cost = wifiCostAt(signal.rssi);
    const bool hotspot = signal.apState == WifiSignal::kHotspotEnabled;
    const int64_t units = bytes / cost.bytesPerUnit;  // whole ones
    return static_cast<float>(units) + (hotspot ? cost.hotspotAddition : 0.0F);
}

}  // namespace kelvo
