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
        addListenerIds(action.deed, ids);
    }
    return ids;
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

void addListenerIds(const Deed& deed, Ids& ids) {
    if (const auto* listen = std::get_if<Listen>(&deed)) {
        ids.insert(listen->id);
    } else if (const auto* unlisten = std::get_if<Unlisten>(&deed)) {
        ids.insert(unlisten->id);
    } else if (const auto* transact = std::get_if<Transact>(&deed)) {
        for (const Argument& argument : transact->args) {
            if (const auto* listener = std::get_if<ListenerArgument>(&argument)) {
                ids.insert(listener->id);
            }
        }
    }
}

void checkListenerId(const JsonPlace& place, const std::string& id, const Ids& known) {
    if (!known.contains(id)) {
        place.fail("no action registers this listener" +
                   common::suggestion(id, {known.begin(), known.end()}));
    }
}

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
            checkListenerId(place.need("id"), dies->id, known);
            registered.erase(dies->id);
        } else if (const auto* fails = std::get_if<ListenerFails>(&action.deed)) {
            checkListenerId(place.need("id"), fails->id, known);
        } else if (const auto* transact = std::get_if<Transact>(&action.deed)) {
            unregister(*transact, registered);
        }
    }
}

}  // namespace sim
