#include "ProgressLine.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::chrono::milliseconds kPeriod{500};
constexpr char kErase[] = "\r\x1b[K";
constexpr size_t kUsualWidth = 80;  // columns

std::string clockText(int64_t timeMs) {
    const auto seconds = static_cast<long long>(timeMs / 1000);
    char text[32];
    std::snprintf(text, sizeof(text), "%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60,
                  seconds % 60);
    return text;
}

/** A dumb one cannot erase a line. */
bool isSmartTerminal() {
    const char* const terminal = getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

/** How much of the terminal's line is free for a text, which must not wrap. */
size_t terminalWidth() {
    winsize size{};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return (known ? size.ws_col : kUsualWidth) - 1;
}

}  // namespace

ProgressLine::ProgressLine(std::string label, int64_t durationMs, bool wanted)
      : mLabel(std::move(label)),
        mDurationMs(std::max<int64_t>(durationMs, 1)),
        mWanted(wanted && isSmartTerminal()),
        mStart(Clock::now()),
        mShown(mStart) {}

ProgressLine::~ProgressLine() {
    if (mOnScreen) {
        std::fputs(kErase, stderr);
    }
}

void ProgressLine::update(int64_t timeMs) {
    if (!mWanted || Clock::now() - mShown < kPeriod) {
        return;
    }
    mShown = Clock::now();
    mOnScreen = true;
    const double real = std::chrono::duration<double>(mShown - mStart).count();
    std::array<char, 128> figures;
    std::snprintf(figures.data(), figures.size(), "%3lld %%  %s of %s  %.0f x real time",
                  static_cast<long long>(timeMs * 100 / mDurationMs), clockText(timeMs).c_str(),
                  clockText(mDurationMs).c_str(), static_cast<double>(timeMs) / 1000 / real);
    const std::string text = (mLabel + figures.data()).substr(0, terminalWidth());
    std::fprintf(stderr, "%s%s", kErase, text.c_str());
}
