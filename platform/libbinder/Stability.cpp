#include <binder/Stability.h>

#include <log/log.h>

#include <binder/Binder.h>

namespace android {
namespace internal {

namespace {

// Levels are kept with the binder, under an address that nobody else uses as an identity.
constexpr char kLevelId = 0;

}  // namespace

void Stability::tryMarkCompilationUnit(IBinder* binder) {
    // A binder that was marked as something else stays what it is.
    [[maybe_unused]] const status_t status = set(binder, kLocalStability, false);
}

void Stability::markCompilationUnit(IBinder* binder) {
    LOG_ALWAYS_FATAL_IF(set(binder, kLocalStability, true) != OK, "binder is marked already");
}

void Stability::markVintf(IBinder* binder) {
    LOG_ALWAYS_FATAL_IF(set(binder, VINTF, true) != OK, "binder is marked already");
}

bool Stability::requiresVintfDeclaration(const sp<IBinder>& binder) {
    return check(get(binder.get()), VINTF);
}

status_t Stability::set(IBinder* binder, int32_t stability, bool log) {
    const Level current = get(binder);
    if (binder == nullptr) {
        return stability == UNDECLARED ? OK : BAD_TYPE;
    }
    if (stability == current && current != UNDECLARED) {
        return OK;
    }
    if (current != UNDECLARED || !isDeclaredStability(stability)) {
        ALOGE_IF(log, "a binder that is %s cannot become %s", stabilityString(current).c_str(),
                 stabilityString(stability).c_str());
        return BAD_TYPE;
    }
    const auto value = static_cast<intptr_t>(stability);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the level itself is kept, it points to nothing
    binder->attachObject(&kLevelId, reinterpret_cast<void*>(value), nullptr, nullptr);
    return OK;
}

Stability::Level Stability::get(IBinder* binder) {
    if (binder == nullptr) {
        return UNDECLARED;
    }
    return static_cast<Level>(reinterpret_cast<intptr_t>(binder->findObject(&kLevelId)));
}

bool Stability::check(int32_t provided, Level required) {
    const bool known = provided == UNDECLARED || isDeclaredStability(provided);
    return known && (provided & required) == required;
}

bool Stability::isDeclaredStability(int32_t stability) {
    return stability == VENDOR || stability == SYSTEM || stability == VINTF;
}

std::string Stability::stabilityString(int32_t stability) {
    switch (stability) {
        case UNDECLARED:
            return "undeclared stability";
        case VENDOR:
            return "vendor stability";
        case SYSTEM:
            return "system stability";
        case VINTF:
            return "vintf stability";
        default:
            return "unknown stability " + std::to_string(stability);
    }
}

}  // namespace internal
}  // namespace android
