#include "Deaths.h"

#include "Limits.h"

namespace binderhub {

bool Deaths::request(Process& process, const binder_handle_cookie& what) {
    Ref* const ref = References::find(process, what.handle, Strength::kWeak);
    if (ref == nullptr || ref->death != nullptr || process.deaths >= kMaxDeaths) {
        return false;
    }
    const binder_uintptr_t cookie = what.cookie;  // a packed field, of which there is no reference
    ref->death = mReferences.deaths.make(cookie);
    ++process.deaths;
    if (ref->node.owner == nullptr) {
        mScheduler.add(process, *ref->death);
    }
    return true;
}

bool Deaths::clear(Thread& thread, const binder_handle_cookie& what) {
    Ref* const ref = References::find(thread.process, what.handle, Strength::kWeak);
    if (ref == nullptr || ref->death == nullptr || ref->death->cookie != what.cookie) {
        return false;
    }
    Death& death = *ref->death;
    ref->death = nullptr;
    if (death.told || death.linked()) {
        death.kind = Work::Kind::kDeadBinderAndClear;
    } else {
        confirmClear(thread, death);
    }
    return true;
}

bool Deaths::acknowledge(Thread& thread, uint64_t cookie) {
    auto& told = thread.process.toldDeaths;
    const auto found = told.find(cookie);
    if (found == told.end()) {
        return false;
    }
    Death& death = *found->second;
    told.erase(found);
    death.told = false;
    if (death.kind == Work::Kind::kDeadBinderAndClear) {
        confirmClear(thread, death);
    }
    return true;
}

void Deaths::confirmClear(Thread& thread, Death& death) {
    death.kind = Work::Kind::kClearDone;
    if (thread.isLooper()) {
        mScheduler.add(thread, death);
    } else {
        mScheduler.add(thread.process, death);
    }
}

void Deaths::announce(Node& node) {
    node.refs.forEach([this](Ref& ref) {
        if (ref.death != nullptr) {
            mScheduler.add(ref.process, *ref.death);
        }
    });
}

}  // namespace binderhub
