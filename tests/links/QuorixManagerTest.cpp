#include "links/QuorixManager.h"

#include <limits>

#include "support/EngineTest.h"

namespace {

using namespace std::string_literals;
using kelvo::QuorixManager;
using Records = std::vector<sim::UsageRecord>;
using Figures = std::vector<int32_t>;
constexpr int64_t kMin = std::numeric_limits<int64_t>::min();
constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
constexpr auto kNone = std::nullopt;

const std::string kRegister = "{'event':'quorix','call':'register','value':2}";
const std::string kStart = "{'event':'quorix','call':'inform','value':1}";

sim::Usage cpuReport(const Records& records) {
    return {records, {}, {}, {}};
}

struct QuorixManagerTest : EngineTest {
    void start() {
        startWithoutTemp(",'temp_threshold_down':[]");
        takeEvents();
    }
    void startRegistered() {
        start();
        manager().regCallBack();
        takeEvents();
        log.clear();
    }
    void setEngine(bool up) { setService("quorix", up); }
    /** The figures after a report, in the order CPU, cellular, Wi-Fi, display. */
    Figures figuresAfter(const sim::Deed& report) {
        phone().perform(report);
        const kelvo::ModulePower& power = manager().power();
        return {power.cpu, power.cellular, power.wifi, power.display};
    }
    static QuorixManager& manager() { return QuorixManager::getInstance(); }
};

}  // namespace

TEST_F(QuorixManagerTest, turnsEnergyIntoPower) {
    startRegistered();
    // records, power, why
    const std::tuple<Records, int32_t, const char*> rows[] = {
            {{{0, 3600, 1000}}, 1, "energy 1000 in 3.6 s"},
            {{{1000, 2000, 400000}, {1500, 3000, 600000}}, 1800, "sum over the whole span"},
            {{{0, 7200, 3999}}, 1, "toward zero"},
            {{{0, 3600, 999}}, 0, "below 1 mW is a figure"},
            {{{0, 3, 1}}, 1, "the least energy that counts"},
            {{{0, 1000, 0}}, -1, "no energy"},
            {{{0, 1000, kNone}}, -1, "energy not said"},
            {{{0, 9000, -5}, {1000, 2000, 100}}, 0, "what gives no energy does not widen the span"},
            {{{kNone, 3599, 1000}}, 1, "no start counts as -1"},
            {{{0, 3600, 500}, {kNone, kNone, 500}}, 0, "span from -1 to 3600"},
            {{{5, kNone, 1000}}, -1, "no end: the span is negative"},
            {{{2000, 2000, 1000}}, -1, "no span"},
            {{{2000, 1000, 1000}}, -1, "end before start"},
            {{{0, 1, kMax}}, std::numeric_limits<int32_t>::max(), "saturates"},
            {{{0, 1, kMax}, {0, 1, kMax}}, -1, "the sum wraps below 0"},
            {{{kMin, kMax, 1000}}, -1, "the span wraps to -1"},
    };
    for (const auto& [records, power, why] : rows) {
        EXPECT_EQ(figuresAfter(cpuReport(records)), (Figures{power, -1, -1, -1})) << why;
    }
    // As an engine sends it: start 0 and end 3600 in fields 1 and 2, and all the other fields.
    const std::string report =
            // CPU: energy in field 4
            "\x12\x12\x08\x00\x10\x90\x1c\x18\x05\x20\xe8\x07\x28\x01\x30\x02\x38\x03\x40\x04"
            // Wi-Fi: in field 9
            "\x3a\x1e\x08\x00\x10\x90\x1c\x18\x05\x25\x00\x00\x80\x40\x2d\x00\x00\x80\x40\x30"
            "\x06\x38\x07\x40\x08\x48\xd0\x0f\x50\x0a\x58\x0b"
            // cellular: in field 8
            "\x42\x1c\x08\x00\x10\x90\x1c\x18\x05\x25\x00\x00\x80\x40\x2d\x00\x00\x80\x40\x30"
            "\x06\x38\x07\x40\xb8\x17\x48\x09\x50\x0a"
            // display: in field 4
            "\x52\x08\x08\x00\x10\x90\x1c\x20\xa0\x1f"
            // GNSS and Bluetooth, which are not read
            "\x2a\x08\x08\x00\x10\x90\x1c\x20\xe8\x07\x4a\x08\x08\x00\x10\x90\x1c\x20\xe8\x07"s;
    EXPECT_EQ(figuresAfter(sim::UsageBytes{report}), (Figures{1, 3, 2, 4}));
    EXPECT_EQ(figuresAfter(sim::Usage{{}, {{0, 3600, 2000}}, {}, {}}), (Figures{-1, -1, 2, -1}))
            << "no records of the others";
    EXPECT_EQ(log.countOf("qxManager: Parse CPU Data"), std::size(rows) + 1)
            << "and no sum of none";
    EXPECT_TRUE(log.has("qxManager: Parse Cellular Data  : duration sum : 3600, energy sum: 3000"));
    EXPECT_TRUE(
            log.has("qxManager: Parse ModuleUsage DEBUG (CPU : 1, Wifi : 2, Cellular : 3, "
                    "Dispaly : 4)"));
}

TEST_F(QuorixManagerTest, keepsTheFiguresOfBytesThatAreNoReport) {
    startRegistered();
    const Figures known = {1, -1, -1, -1};
    ASSERT_EQ(figuresAfter(cpuReport({{0, 3600, 1000}})), known);
    const std::pair<std::string, std::string> rows[] = {
            {"", "qxManager: Pelko get data failed, aidl version: 1"},
            {"\x12\x0a\x08", "qxManager: parseFromArray ModuleUsage Fail !"},
            {std::string(200, '\xff'), "qxManager: parseFromArray ModuleUsage Fail !"},
    };
    for (const auto& [bytes, line] : rows) {
        EXPECT_EQ(figuresAfter(sim::UsageBytes{bytes}), known) << line;
        EXPECT_EQ(log.errors(line), 1U);
        log.clear();
    }
}

TEST_F(QuorixManagerTest, readsReportsOfNewerEngines) {
    startRegistered();
    const std::string cpu("\x12\x0a\x08\x00\x10\x90\x1c\x20\xe8\x07\x78\x01", 12);  // field 15 too
    EXPECT_EQ(figuresAfter(sim::UsageBytes{cpu + "\xf2\x06\x03" + "abc"}), (Figures{1, -1, -1, -1}))
            << "unknown fields in record and message";
    const std::string twice("\x52\x0a\x08\x00\x10\x90\x1c\x20\x01\x20\xe8\x07", 12);
    EXPECT_EQ(figuresAfter(sim::UsageBytes{twice})[3], 1) << "the last of a field counts";
    const std::string asText("\x12\x02\x22\x00", 4);
    EXPECT_EQ(figuresAfter(sim::UsageBytes{asText})[0], -1) << "an energy of another type is none";
}

TEST_F(QuorixManagerTest, findsTheEngineAgainAfterItsDeath) {
    startRegistered();
    ASSERT_EQ(figuresAfter(cpuReport({{0, 3600, 1000}}))[0], 1);
    setEngine(false);
    EXPECT_EQ(log.errors("qxManager Quorix server died!"), 1U);
    EXPECT_EQ(manager().power().cpu, 1) << "the figures stay";
    manager().regCallBack();
    EXPECT_EQ(manager().startQuorix(), -1);
    EXPECT_EQ(manager().stopQuorix(), -1);
    EXPECT_FALSE(manager().getQuorixService());
    for (const char* line : {"qxManager: registerQuorixCallback getQuorixService fail",
                             "qxManager: startQuorix getQuorixService fail",
                             "qxManager: stopQuorix getQuorixService fail"}) {
        EXPECT_EQ(log.errors(line), 1U) << line;
    }
    setEngine(true);
    EXPECT_EQ(figuresAfter(cpuReport({{0, 3600, 2000}}))[0], 1) << "knows nobody yet";
    EXPECT_EQ(manager().startQuorix(), 0) << "looks for it again";
    manager().regCallBack();
    EXPECT_EQ(takeEvents(), (Lines{kStart, kRegister}));
    EXPECT_EQ(figuresAfter(cpuReport({{0, 3600, 2000}}))[0], 2);
}
