#include "sim/scenario/ListenerCheck.h"

#include <set>

#include "common/NearestName.h"

namespace sim {

namespace {

constexpr uint32_t kUnregister = 2;  // transaction code

using Ids = std::set<std::string>;

/** Ids that become binders at some time, by whichever action. */
Ids knownIds(const std::vector<std::pair<Action, JsonPlace>>& timeline) {
    Ids ids;
    for (const auto& [action, place] : timeline) {
        if (const auto* listen = std::get_if<Listen>(&action.deed)) {
            ids.insert(listen->id);
        } else if (const auto* unlisten = std::get_if<Unlisten>(&action.deed)) {
            ids.insert(unlisten->id);
        } else if (const auto* transact = std::get_if<Transact>(&action.deed)) {
            for (const Argument& argument : transact->args) {
                if (const auto* listener = std::get_if<ListenerArgument>(&argument)) {
                    ids.insert(listener->id);
                }
            }
        }
    }
    return ids;
}

void checkKnown(const Ids& ids, const std::string& id, const JsonPlace& place) {
    if (!ids.contains(id)) {
        place.need("id").fail("no action registers this listener" +
                              common::suggestion(id, {ids.begin(), ids.end()}));
    }
}

void unregister(const Transact& transact, Ids& registered) {
    if (transact.code != kUnregister) {
        return;
    }
    for (const Argument& argument : transact.args) {
        if (const auto* listener = std::get_if<ListenerArgument>(&argument)) {
            registered.erase(listener->id);
        }
    }
}

}  // namespace

void checkListeners(const std::vector<std::pair<Action, JsonPlace>>& timeline) {
    const Ids known = knownIds(timeline);
    Ids registered;
    for (const auto& [action, place] : timeline) {
        if (const auto* listen = std::get_if<Listen>(&action.deed)) {
            if (!registered.insert(listen->id).second) {
                place.need("id").fail("this listener is registered and alive");
            }
        } else if (const auto* unlisten = std::get_if<Unlisten>(&action.deed)) {
            registered.erase(unlisten->id);
        } else if (const auto* dies = std::get_if<ListenerDies>(&action.deed)) {
            checkKnown(known, dies->id, place);
            registered.erase(dies->id);
        } else if (const auto* fails = std::get_if<ListenerFails>(&action.deed)) {
            checkKnown(known, fails->id, place);
        } else if (const auto* transact = std::get_if<Transact>(&action.deed)) {
            unregister(*transact, registered);
        }
    }
}

}  // namespace sim
