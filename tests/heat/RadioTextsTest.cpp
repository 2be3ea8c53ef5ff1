#include "heat/RadioTexts.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace {

using kelvo::CellularSignal;
using kelvo::Traffic;
using kelvo::WifiSignal;

constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();
constexpr int64_t kMin = std::numeric_limits<int64_t>::min();

TEST(RadioTexts, readTheSignalOfBothGenerations) {
    using Figures = std::array<int32_t, 13>;
    // kind, state, level; rssi, rssnr, rsrq, rsrp; ss…, csi…
    const std::pair<const char*, Figures> rows[] = {
            {"connectState:2,level:3,rssi:-71,rssnr:8,rsrq:-11,rsrp:-101",
             {4, 2, 3, -71, 8, -11, -101, -1, -1, -1, -1, -1, -1}},
            {"connectState:2,level:1,ssSinr:5,ssRsrp:-118,ssRsrq:-15,csiSinr:1,csiRsrp:2,csiRsrq:3",
             {5, 2, 1, 0, 0, 0, 0, 5, -118, -15, 1, 2, 3}},
            {"", {4, 0, 0, 0, 0, 0, 0, -1, -1, -1, -1, -1, -1}},
            {"level:1,ssRsrp:-90", {5}},
            {"connectState:1,level:,rssi:-71", {4, 1, 0, 0, 0, 0, 0, -1, -1, -1, -1, -1, -1}},
            {"connectState:1,rssi:-71,level:3", {4, 1, 0, 0, 0, 0, 0, -1, -1, -1, -1, -1, -1}},
            {"connectState: +1,level:\t-0x3", {4, 1, 0, 0, 0, 0, 0, -1, -1, -1, -1, -1, -1}},
            {"connectState:+-1", {4, 0, 0, 0, 0, 0, 0, -1, -1, -1, -1, -1, -1}},
            {"connectState:4294967299,level:99999999999999999999,rssi:-99999999999999999999",
             {4, 3, -1, 0, 0, 0, 0, -1, -1, -1, -1, -1, -1}},
    };
    for (const auto& [text, expected] : rows) {
        const CellularSignal signal = kelvo::parseCellularSignal(text);
        const Figures figures = {
                signal.connType, signal.connectState, signal.level,  signal.rssi,   signal.rssnr,
                signal.rsrq,     signal.rsrp,         signal.ssSinr, signal.ssRsrp, signal.ssRsrq,
                signal.csiSinr,  signal.csiRsrp,      signal.csiRsrq};
        EXPECT_EQ(figures, expected) << text;
    }
}

TEST(RadioTexts, keepWifiFieldsThatAreNotSaid) {
    WifiSignal signal;
    // text, how many fields it has, expected
    const std::tuple<const char*, int, std::array<int32_t, 6>> rows[] = {
            {"WifiState:3,ApState:13,linkSpeed:866,frequency:5180,rssi:-59,generation:6",
             6,
             {3, 13, 866, 5180, -59, 6}},
            {"WifiState:1,ApState:11,speed:1", 2, {1, 11, 866, 5180, -59, 6}},
            {"wifiState:2", 0, {1, 11, 866, 5180, -59, 6}},
            {"WifiState:x", 0, {1, 11, 866, 5180, -59, 6}},
    };
    for (const auto& [text, count, expected] : rows) {
        EXPECT_EQ(kelvo::parseWifiSignal(text, signal), count) << text;
        const std::array<int32_t, 6> figures = {signal.wifiState, signal.apState,
                                                signal.linkSpeed, signal.frequency,
                                                signal.rssi,      signal.generation};
        EXPECT_EQ(figures, expected) << text;
    }
}

TEST(RadioTexts, splitTraffic) {
    const std::string huge = "99999999999999999999";
    // text, mobile, other
    const std::tuple<std::string, int64_t, int64_t> rows[] = {
            {"transmit:1000,receive:12000,mobileTx:160,mobileRx:1000", 1160, 11840},
            {"transmit:1000,receive:12000", 0, 13000},
            {"receive:12000,transmit:1000", 0, 0},
            {"transmit:5,mobileTx:7,mobileRx:1", 0, 5},
            {"transmit:5,receive:,mobileTx:7,mobileRx:1", 0, 5},
            {"transmit:0,receive:0,mobileTx:5,mobileRx:-9", -4, 4},
            {"transmit:" + huge + ",receive:1,mobileTx:0,mobileRx:0", 0, kMin},
            {"transmit:0,receive:0,mobileTx:-" + huge + ",mobileRx:-1", kMax, kMin + 1},
    };
    for (const auto& [text, mobile, other] : rows) {
        const Traffic traffic = kelvo::parseTraffic(text);
        EXPECT_EQ(kelvo::mobileTraffic(traffic), mobile) << text;
        EXPECT_EQ(kelvo::otherTraffic(traffic), other) << text;
    }
}

TEST(RadioTexts, costWifiTrafficMoreOnAWeakSignal) {
    // rssi, apState, bytes, energy
    const std::tuple<int32_t, int32_t, int64_t, float> rows[] = {
            {-59, 13, 11840, 192}, {-59, 11, 11840, 2},  {0, 11, 5919, 0},
            {-60, 11, 11840, 2},   {-60, 13, 8000, 252}, {-89, 13, 3999, 250},
            {-90, 11, 9000, 3},    {-99, 13, 2999, 300}, {-100, 13, 3000, 402},
            {-100, 11, 1499, 0},   {-59, 13, 1, 190},    {-59, 13, 0, 0},
            {-59, 13, kMin, 0},    {-59, 14, 5920, 1},   {kLeast, 11, 1500, 1},
    };
    for (const auto& [rssi, apState, bytes, energy] : rows) {
        WifiSignal signal;
        signal.rssi = rssi;
        signal.apState = apState;
        EXPECT_EQ(kelvo::wifiEnergy(signal, bytes), energy) << rssi << " " << bytes;
    }
}

}  // namespace
