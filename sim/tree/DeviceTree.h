#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

/**
 * The files of a simulated phone below a folder of the host. Paths are the phone's own ("/sys/…").
 * Writes that change nothing are skipped. Not thread-safe. Failures throw std::system_error.
 */
class DeviceTree {
  public:
    /** `root` is created when absent; it is not removed at the end. */
    explicit DeviceTree(std::string root);
    ~DeviceTree();
    DeviceTree(const DeviceTree&) = delete;
    DeviceTree& operator=(const DeviceTree&) = delete;

    const std::string& root() const { return mRoot; }
    /** Where a path of the phone lies on the host. */
    std::string hostPath(std::string_view path) const;

    void addFolder(std::string_view path);
    /** Creates the node, with its folders, or replaces its text. */
    void setNode(std::string_view path, std::string_view text);
    /** The node is gone afterwards: reading it fails. Fine when it was absent. */
    void removeNode(std::string_view path);
    std::optional<std::string> node(std::string_view path) const;

    /** thermal_zone`index` with its type; without a temperature (m°C) its "temp" is unreadable. */
    void addZone(int32_t index, std::string_view type, std::optional<int32_t> temp);
    void setZoneTemp(int32_t index, std::optional<int32_t> temp);
    /** What a zone shows from now on, m°C; none: it cannot be read, or holds no number. */
    using ZoneListener = std::function<void(int32_t zone, std::optional<int32_t> temp)>;
    /** Tells `listener` of all zones now, then of each whose value changes. */
    void setZoneListener(ZoneListener listener);

    /** A system property, written by rename so that a reader sees the old value or the new. */
    void setProperty(std::string_view name, std::string_view value);
    std::optional<std::string> property(std::string_view name) const;

  private:
    struct Node {
        int fd = -1;
        std::string text;
        char* map = nullptr;  // the file in memory: most changes then need no call of the system
    };
    struct Zone {
        Node* node = nullptr;  // null while it is absent
        std::optional<int32_t> temp;
        bool plain = false;  // its node is what setZoneTemp() makes of `temp`
    };
    static void release(Node& node);
    Node& createNode(std::string_view path);
    Node& putNode(std::string_view path, std::string_view text);
    void dropNode(std::string_view path);
    void writeNode(Node& node, std::string_view text);
    void noteZone(int32_t index, const Zone& zone);

    const std::string mRoot;
    std::map<std::string, Node, std::less<>> mNodes;
    std::map<int32_t, Zone> mZones;
    ZoneListener mZoneListener;
};

}  // namespace sim
