#include "sim/tree/DeviceTree.h"

#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "sim/scenario/PhonePaths.h"

namespace sim {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::optional<std::string> readAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

constexpr size_t kMapSize = 4096;

/** The begin of a file in memory, null where the host cannot. */
char* mapped(int fd) {
    void* const map = mmap(nullptr, kMapSize, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    return map == MAP_FAILED ? nullptr : static_cast<char*>(map);
}

/** N when the path is that of thermal_zoneN's temperature. */
std::optional<int32_t> zoneAt(std::string_view path) {
    if (!path.starts_with(kZonePathStart) || !path.ends_with("/temp")) {
        return std::nullopt;
    }
    path.remove_prefix(kZonePathStart.size());
    int32_t zone = 0;
    const auto [end, error] = std::from_chars(path.data(), path.data() + path.size(), zone);
    const bool whole = std::string_view(end, path.data() + path.size()) == "/temp";
    return error == std::errc() && whole ? std::optional(zone) : std::nullopt;
}

std::optional<int32_t> numberIn(std::string_view text) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

}  // namespace

void DeviceTree::release(Node& node) {
    if (node.map != nullptr) {
        munmap(node.map, kMapSize);
    }
    close(node.fd);
}

DeviceTree::DeviceTree(std::string root) : mRoot(std::move(root)) {
    fs::create_directories(mRoot);
}

DeviceTree::~DeviceTree() {
    for (auto& [path, node] : mNodes) {
        release(node);
    }
}

std::string DeviceTree::hostPath(std::string_view path) const {
    return mRoot + std::string(path);
}

void DeviceTree::addFolder(std::string_view path) {
    fs::create_directories(hostPath(path));
}

void DeviceTree::setNode(std::string_view path, std::string_view text) {
    Node& node = putNode(path, text);
    if (const auto zone = zoneAt(path)) {
        noteZone(*zone, {&node, numberIn(text), false});
    }
}

DeviceTree::Node& DeviceTree::createNode(std::string_view path) {
    const std::string host = hostPath(path);
    fs::create_directories(fs::path(host).parent_path());
    const int fd = open(host.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        fail(host);
    }
    return mNodes.emplace(std::string(path), Node{fd, "", nullptr}).first->second;
}

DeviceTree::Node& DeviceTree::putNode(std::string_view path, std::string_view text) {
    const auto found = mNodes.find(path);
    Node& node = found != mNodes.end() ? found->second : createNode(path);
    if (node.text != text) {
        writeNode(node, text);
    }
    return node;
}

void DeviceTree::writeNode(Node& node, std::string_view text) {
    if (text.size() == node.text.size() && text.size() <= kMapSize) {
        if (node.map == nullptr) {
            node.map = mapped(node.fd);
        }
        if (node.map != nullptr) {
            memcpy(node.map, text.data(), text.size());
            node.text = text;
            return;
        }
    }
    // Cut first only when the text gets shorter: a reader beside us then never sees an empty node.
    const bool written =
            pwrite(node.fd, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
            (text.size() >= node.text.size() ||
             ftruncate(node.fd, static_cast<off_t>(text.size())) == 0);
    if (!written) {
        fail(mRoot);
    }
    node.text = text;
}

void DeviceTree::removeNode(std::string_view path) {
    dropNode(path);
    if (const auto zone = zoneAt(path)) {
        noteZone(*zone, {nullptr, std::nullopt, true});
    }
}

void DeviceTree::dropNode(std::string_view path) {
    const auto found = mNodes.find(path);
    if (found != mNodes.end()) {
        release(found->second);
        mNodes.erase(found);
    }
    if (unlink(hostPath(path).c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
        fail(hostPath(path));
    }
}

std::optional<std::string> DeviceTree::node(std::string_view path) const {
    return readAll(hostPath(path));
}

void DeviceTree::addZone(int32_t index, std::string_view type, std::optional<int32_t> temp) {
    setNode(zonePath(index, "type"), std::string(type) + "\n");
    setZoneTemp(index, temp);
}

void DeviceTree::setZoneTemp(int32_t index, std::optional<int32_t> temp) {
    const auto found = mZones.find(index);
    Node* node = found != mZones.end() ? found->second.node : nullptr;
    if (found != mZones.end() && found->second.plain && found->second.temp == temp) {
        return;
    }
    if (!temp) {
        dropNode(zonePath(index, "temp"));
        node = nullptr;
    } else if (const std::string text = std::to_string(*temp) + "\n"; node != nullptr) {
        writeNode(*node, text);
    } else {
        node = &putNode(zonePath(index, "temp"), text);
    }
    noteZone(index, {node, temp, true});
}

void DeviceTree::noteZone(int32_t index, const Zone& zone) {
    const auto [at, isNew] = mZones.try_emplace(index);
    const bool changed = isNew || at->second.temp != zone.temp;
    at->second = zone;
    if (changed && mZoneListener) {
        mZoneListener(index, zone.temp);
    }
}

void DeviceTree::setZoneListener(ZoneListener listener) {
    mZoneListener = std::move(listener);
    for (const auto& [index, zone] : mZones) {
        mZoneListener(index, zone.temp);
    }
}

void DeviceTree::setProperty(std::string_view name, std::string_view value) {
    const std::string folder = hostPath("/dev/properties");
    fs::create_directories(folder);
    // The leading dot keeps the half-written file out of property_list().
    const std::string draft = folder + "/." + std::string(name) + ".sim";
    {
        std::ofstream file(draft, std::ios::binary | std::ios::trunc);
        file << value;
        if (!file.flush()) {
            fail(draft);
        }
    }
    fs::rename(draft, folder + "/" + std::string(name));
}

std::optional<std::string> DeviceTree::property(std::string_view name) const {
    return readAll(hostPath("/dev/properties/" + std::string(name)));
}

}  // namespace sim
