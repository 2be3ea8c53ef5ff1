#pragma once

#include <cstdint>
#include <string_view>

// What framework clients tell of the radios. The texts have fixed forms; a text is read up to the
// first place where it has another one. Numbers that do not fit become the nearest int64, and
// 32-bit fields keep its low half. Pure.

namespace kelvo {

struct CellularSignal {
    static constexpr int32_t kLte = 4;
    static constexpr int32_t kNr = 5;
    static constexpr int32_t kNotReported = -1;

    int32_t connType = 0;  // kLte, kNr; 0 before the first text
    int32_t connectState = 0;
    int32_t level = 0;
    // LTE
    int32_t rssi = 0;
    int32_t rssnr = 0;
    int32_t rsrq = 0;
    int32_t rsrp = 0;  // dBm
    // NR
    int32_t ssSinr = 0;
    int32_t ssRsrp = 0;  // dBm
    int32_t ssRsrq = 0;
    int32_t csiSinr = 0;
    int32_t csiRsrp = 0;
    int32_t csiRsrq = 0;
};

struct WifiSignal {
    static constexpr int32_t kWifiEnabled = 3;
    static constexpr int32_t kHotspotEnabled = 13;

    int32_t wifiState = 0;
    int32_t apState = 0;
    int32_t linkSpeed = 0;
    int32_t frequency = 0;
    int32_t rssi = 0;  // dBm
    int32_t generation = 0;
};

/** Bytes since the last text. */
struct Traffic {
    int64_t transmit = 0;
    int64_t receive = 0;
    int64_t mobileTx = 0;
    int64_t mobileRx = 0;
};

/** "connectState:…"; NR when the text says ssRsrp, else LTE. Fields that cannot be read are 0. */
CellularSignal parseCellularSignal(std::string_view text);

/** "transmit:…"; fields that cannot be read are 0. */
Traffic parseTraffic(std::string_view text);

/** "WifiState:…"; how many fields were read, the others keep their values. */
int parseWifiSignal(std::string_view text, WifiSignal& signal);

/** What went over the modem, and what went another way (bytes; both wrap). */
int64_t mobileTraffic(const Traffic& traffic);
int64_t otherTraffic(const Traffic& traffic);

/** What a report of Wi-Fi traffic counts as, by the strength of the signal and the hotspot. */
float wifiEnergy(const WifiSignal& signal, int64_t bytes);

}  // namespace kelvo
