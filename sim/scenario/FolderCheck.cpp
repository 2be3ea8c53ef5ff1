#include "sim/scenario/FolderCheck.h"

#include <set>

#include "sim/scenario/PhonePaths.h"

namespace sim {

namespace {

using Files = std::set<std::string>;

Files filesOf(const Scenario& scenario, const std::vector<std::string>& columns) {
    Files files{std::string(kShellTempPath), std::string(kMainConfigPath),
                std::string(kDataConfigPath), "/dev/properties/any", "/data/zstats/atoms.jsonl"};
    files.insert(columns.begin(), columns.end());
    for (size_t i = 0; i < scenario.zones.size(); ++i) {
        files.insert(zonePath(static_cast<int32_t>(i), "temp"));
        files.insert(zonePath(static_cast<int32_t>(i), "type"));
    }
    const auto add = [&files](const std::vector<NodeChange>& nodes) {
        for (const NodeChange& node : nodes) {
            if (node.text) {
                files.insert(node.path);
            }
        }
    };
    add(scenario.nodes);
    for (const Action& action : scenario.timeline) {
        if (const auto* const set = std::get_if<SetNodes>(&action.deed)) {
            add(set->nodes);
        }
    }
    return files;
}

void check(const JsonPlace& member, const std::string& path, const Files& files) {
    for (size_t end = path.rfind('/'); end != 0; end = path.rfind('/', end - 1)) {
        if (files.contains(path.substr(0, end))) {
            member.fail("\"" + path.substr(0, end) + "\" is a node, not a folder");
        }
    }
    const auto below = files.lower_bound(path + "/");
    if (below != files.end() && below->starts_with(path + "/")) {
        member.fail("\"" + path + "\" is a folder: it holds \"" + *below + "\"");
    }
}

void checkAll(const JsonPlace& nodes, const Files& files) {
    for (const auto& [path, text] : nodes.members()) {
        check(text, path, files);
    }
}

}  // namespace

void checkFolders(const JsonPlace& root, const Scenario& scenario,
                  const std::vector<std::string>& columns) {
    const Files files = filesOf(scenario, columns);
    if (const auto nodes = root.find("nodes")) {
        checkAll(*nodes, files);
    }
    for (const std::string& column : columns) {
        check(root.need("trace"), column, files);
    }
    const auto timeline = root.find("timeline");
    for (const JsonPlace& action : timeline ? timeline->elements() : std::vector<JsonPlace>()) {
        if (action.need("do").text() == "nodes") {
            checkAll(action.need("set"), files);
        }
    }
}

}  // namespace sim
