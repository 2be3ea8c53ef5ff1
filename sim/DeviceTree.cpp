#include "sim/DeviceTree.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

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

constexpr std::string_view kZoneFolder = "/sys/class/thermal/thermal_zone";

/** N when the path is that of thermal_zoneN's temperature. */
std::optional<int32_t> zoneAt(std::string_view path) {
    if (!path.starts_with(kZoneFolder) || !path.ends_with("/temp")) {
        return std::nullopt;
    }
    path.remove_prefix(kZoneFolder.size());
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

DeviceTree::DeviceTree(std::string root) : mRoot(std::move(root)) {
    fs::create_directories(mRoot);
}

DeviceTree::~DeviceTree() {
    for (const auto& [path, node] : mNodes) {
        close(node.fd);
    }
}

std::string DeviceTree::hostPath(std::string_view path) const {
    return mRoot + std::string(path);
}

void DeviceTree::addFolder(std::string_view path) {
    fs::create_directories(hostPath(path));
}

void DeviceTree::setNode(std::string_view path, std::string_view text) {
    putNode(path, text);
    if (const auto zone = zoneAt(path)) {
        noteZone(*zone, numberIn(text), false);
    }
}

void DeviceTree::putNode(std::string_view path, std::string_view text) {
    auto found = mNodes.find(path);
    if (found == mNodes.end()) {
        const std::string host = hostPath(path);
        fs::create_directories(fs::path(host).parent_path());
        const int fd = open(host.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (fd < 0) {
            fail(host);
        }
        found = mNodes.emplace(std::string(path), Node{fd, ""}).first;
        writeNode(found->second, path, text);
    } else if (found->second.text != text) {
        writeNode(found->second, path, text);
    }
}

void DeviceTree::writeNode(Node& node, std::string_view path, std::string_view text) {
    // Cut first only when the text gets shorter: a reader beside us then never sees an empty node.
    if (pwrite(node.fd, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
        fail(hostPath(path));
    }
    if (text.size() < node.text.size() &&
        ftruncate(node.fd, static_cast<off_t>(text.size())) != 0) {
        fail(hostPath(path));
    }
    node.text = text;
}

void DeviceTree::removeNode(std::string_view path) {
    dropNode(path);
    if (const auto zone = zoneAt(path)) {
        noteZone(*zone, std::nullopt, true);
    }
}

void DeviceTree::dropNode(std::string_view path) {
    const auto found = mNodes.find(path);
    if (found != mNodes.end()) {
        close(found->second.fd);
        mNodes.erase(found);
    }
    if (unlink(hostPath(path).c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
        fail(hostPath(path));
    }
}

std::optional<std::string> DeviceTree::node(std::string_view path) const {
    return readAll(hostPath(path));
}

std::string DeviceTree::zonePath(int32_t index, std::string_view node) {
    return std::string(kZoneFolder) + std::to_string(index) + "/" + std::string(node);
}

void DeviceTree::addZone(int32_t index, std::string_view type, std::optional<int32_t> temp) {
    setNode(zonePath(index, "type"), std::string(type) + "\n");
    setZoneTemp(index, temp);
}

void DeviceTree::setZoneTemp(int32_t index, std::optional<int32_t> temp) {
    const auto found = mZones.find(index);
    if (found != mZones.end() && found->second.plain && found->second.temp == temp) {
        return;
    }
    const std::string path = zonePath(index, "temp");
    if (temp) {
        putNode(path, std::to_string(*temp) + "\n");
    } else {
        dropNode(path);
    }
    noteZone(index, temp, true);
}

void DeviceTree::noteZone(int32_t zone, std::optional<int32_t> temp, bool plain) {
    const auto [at, isNew] = mZones.try_emplace(zone);
    const bool changed = isNew || at->second.temp != temp;
    at->second = {temp, plain};
    if (changed && mZoneListener) {
        mZoneListener(zone, temp);
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

TemporaryFolder::TemporaryFolder(std::string_view prefix) {
    std::string name = (fs::temp_directory_path() / (std::string(prefix) + "XXXXXX")).string();
    if (mkdtemp(name.data()) == nullptr) {
        fail(name);
    }
    mPath = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(mPath, ignored);
}

}  // namespace sim
