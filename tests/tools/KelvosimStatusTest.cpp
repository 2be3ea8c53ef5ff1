// What the line a second of a live run is made of.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

#include "KelvodReport.h"
#include "ProgressLine.h"
#include "StatusLine.h"
#include "support/Json.h"

namespace {

TEST(KelvosimHeatSource, isTheHottestComponent) {
    Json::Value report;
    EXPECT_EQ(mainHeatSource(report), std::nullopt);
    report["cpu"]["avgHeat"] = 300;
    report["gpu"]["avgHeat"] = 500;
    report["wifi"] = "broken";
    EXPECT_EQ(mainHeatSource(report), "gpu");
    report["cpu"]["avgHeat"] = 0;
    report["gpu"]["avgHeat"] = -1;
    EXPECT_EQ(mainHeatSource(report), std::nullopt);
    EXPECT_EQ(mainHeatSource("text"), std::nullopt);
}

TEST(KelvosimLine, showsADashForWhatIsNotKnown) {
    sim::Scenario scenario;
    StatusLine line(scenario);
    PhoneState state;
    state.timeMs = 61'000;
    state.scene = "default";
    const std::string alone = line.line(state);
    EXPECT_EQ(alone.find("00:01:01    -      -      -       -        -            -"), 0u) << alone;
    EXPECT_NE(alone.find("kelvod does not answer"), std::string::npos);
    state.kelvod = KelvodReport{38.04, 5, 1, 27, "cpu"};
    state.hottestZone = sim::ZoneSpec{"cpu-1-3", 53640};
    EXPECT_EQ(line.line(state),
              "00:01:01    38.0   5      1       27       cpu          default         "
              "cpu-1-3 53.6");
    state.kelvod->level = 4;
    state.scene = "flashon";
    EXPECT_TRUE(line.line(state).ends_with("  level 5 -> 4  scene default -> flashon"));
    state.kelvod.reset();
    EXPECT_TRUE(line.line(state).ends_with("answer)")) << "not known is no change";
    state.kelvod = KelvodReport{38.04, 4, 1, 27, "cpu"};
    state.scene = "default";
    EXPECT_TRUE(line.line(state).ends_with("53.6  scene flashon -> default"));
    EXPECT_EQ(StatusLine::heading().find("scene"), line.line(state).find("default"));
}

/** What a progress line writes on a terminal of 20 columns within a second. */
std::string progress(const char* terminal) {
    setenv("TERM", terminal, 1);
    int ends[2] = {-1, -1};
    const winsize size{24, 20, 0, 0};
    EXPECT_EQ(openpty(&ends[0], &ends[1], nullptr, nullptr, &size), 0);
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    dup2(ends[1], STDERR_FILENO);
    const auto start = std::chrono::steady_clock::now();
    std::string text;
    ProgressLine line("other: ", 86'400'000, true);
    while (text.empty() && std::chrono::steady_clock::now() - start < std::chrono::seconds(1)) {
        line.update(43'200'000);
        char bytes[256];
        const ssize_t count = read(ends[0], bytes, sizeof(bytes));
        text.append(bytes, static_cast<size_t>(std::max<ssize_t>(count, 0)));
    }
    return text;
}

TEST(KelvosimProgress, fitsTheTerminalAndIsSilentOnADumbOne) {
    const int own = dup(STDERR_FILENO);
    const std::string shown = progress("xterm");
    const std::string dumb = progress("dumb");
    dup2(own, STDERR_FILENO);
    EXPECT_EQ(shown, "\r\x1b[Kother:  50 %  12:00");
    EXPECT_EQ(dumb, "");
}

}  // namespace
