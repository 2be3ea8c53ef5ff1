#include "HubState.h"

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

#include "Hub.h"

namespace binderhub {

namespace {

using Field = std::pair<const char*, uint64_t>;

std::string object(std::initializer_list<Field> fields) {
    std::string text;
    for (const auto& [name, value] : fields) {
        text += (text.empty() ? "{\"" : ",\"");
        text += name;
        text += "\":" + std::to_string(value);
    }
    return text + "}";
}

std::string describe(const Process& process) {
    uint64_t loopers = 0;
    for (const auto& [key, thread] : process.threads) {
        loopers += thread->isLooper() ? 1U : 0U;
    }
    return object({{"pid", static_cast<uint64_t>(process.pid)},
                   {"uid", process.uid},
                   {"threads", process.threads.size()},
                   {"loopers", loopers},
                   {"nodes", process.nodes.size()},
                   {"handles", process.handles.count()},
                   {"buffers", process.buffers.count()},
                   {"bytes", process.buffers.bytes()},
                   {"one_way_bytes", process.buffers.asyncBytes()},
                   {"descriptors", process.buffers.heldDescriptors()},
                   {"mistakes", process.mistakes}});
}

/** Oldest numbers first, whatever order the table has. */
std::vector<const Process*> sorted(const Processes& processes) {
    std::vector<const Process*> list;
    for (const auto& [key, process] : processes) {
        list.push_back(key);
    }
    std::sort(list.begin(), list.end(), [](const Process* left, const Process* right) {
        return std::pair(left->pid, left) < std::pair(right->pid, right);
    });
    return list;
}

}  // namespace

std::string stateOf(const Hub& hub) {
    std::string text = "{\"processes\":[";
    uint64_t threads = 0;
    uint64_t buffers = 0;
    uint64_t bytes = 0;
    for (const Process* process : sorted(hub.processes())) {
        text += (text.back() == '[' ? "" : ",") + describe(*process);
        threads += process->threads.size();
        buffers += process->buffers.count();
        bytes += process->buffers.bytes();
    }
    const Node* const manager = hub.driver().references.manager();
    text += "],\"context_manager\":";
    text += manager == nullptr ? "null" : std::to_string(manager->owner->pid);
    return text + ",\"totals\":" +
           object({{"processes", hub.processes().size()},
                   {"threads", threads},
                   {"nodes", hub.driver().references.nodes.live()},
                   {"handles", hub.driver().references.refs.live()},
                   {"death_notices", hub.driver().references.deaths.live()},
                   {"transactions", hub.driver().transactor.transactions.live()},
                   {"buffers", buffers},
                   {"bytes", bytes}}) +
           "}";
}

}  // namespace binderhub
