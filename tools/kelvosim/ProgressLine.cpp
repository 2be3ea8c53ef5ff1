#include "ProgressLine.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace {

constexpr std::chrono::milliseconds kPeriod{500};
constexpr char kErase[] = "\r\x1b[K";

std::string clockText(int64_t timeMs) {
    const auto seconds = static_cast<long long>(timeMs / 1000);
    char text[32];
    std::snprintf(text, sizeof(text), "%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60,
                  seconds % 60);
    return text;
}

}  // namespace

ProgressLine::ProgressLine(std::string label, int64_t durationMs, bool wanted)
      : mLabel(std::move(label)),
        mDurationMs(std::max<int64_t>(durationMs, 1)),
        mWanted(wanted && isatty(STDERR_FILENO) == 1),
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
    std::fprintf(stderr, "%s%s%3lld %%  %s of %s  %.0f x real time", kErase, mLabel.c_str(),
                 static_cast<long long>(timeMs * 100 / mDurationMs), clockText(timeMs).c_str(),
                 clockText(mDurationMs).c_str(), static_cast<double>(timeMs) / 1000 / real);
}
