#include "PropertyFiles.h"

#include <android-base/unique_fd.h>
#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "PropertyRules.h"

namespace properties {

namespace {

std::string folderPath() {
    const char* root = getenv("KELVO_ROOT");
    return std::string(root == nullptr ? "" : root) + "/dev/properties";
}

bool makeFolders(const std::string& path) {
    for (size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
        mkdir(path.substr(0, end).c_str(), 0755);
    }
    return mkdir(path.c_str(), 0755) == 0 || errno == EEXIST;
}

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = TEMP_FAILURE_RETRY(::write(fd, text.data(), text.size()));
        if (written <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

/** The draft's path, or an empty text. A name of its own keeps writers of one property apart. */
std::string writeDraft(const std::string& folder, std::string_view value) {
    std::string path = folder + "/.draft-XXXXXX";
    android::base::unique_fd fd(mkostemp(path.data(), O_CLOEXEC));
    if (fd < 0) {
        return {};
    }
    if (fchmod(fd, 0644) != 0 || !writeAll(fd, value)) {
        unlink(path.c_str());
        return {};
    }
    return path;
}

}  // namespace

std::optional<std::string> readText(const std::string& name, size_t limit) {
    const std::string path = folderPath() + "/" + name;
    // Not to be held up by a pipe that somebody put in the place of a file.
    android::base::unique_fd fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (fd < 0) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 256> part;
    while (text.size() < limit) {
        const size_t wanted = std::min(part.size(), limit - text.size());
        const ssize_t length = TEMP_FAILURE_RETRY(read(fd, part.data(), wanted));
        if (length < 0) {
            return std::nullopt;
        }
        if (length == 0) {
            break;
        }
        text.append(part.data(), static_cast<size_t>(length));
    }
    return text;
}

bool writeValue(const std::string& name, const std::string& value, bool mayReplace) {
    const std::string folder = folderPath();
    if (!makeFolders(folder)) {
        return false;
    }
    const std::string draft = writeDraft(folder, value);
    if (draft.empty()) {
        return false;
    }
    const std::string path = folder + "/" + name;
    if (mayReplace && rename(draft.c_str(), path.c_str()) == 0) {
        return true;
    }
    // A link fails when its name is taken: of two writers at once only one can succeed.
    const bool linked = !mayReplace && link(draft.c_str(), path.c_str()) == 0;
    unlink(draft.c_str());
    return linked;
}

std::vector<std::string> listNames() {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(folderPath().c_str()), closedir);
    while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
        if (isLegalName(entry->d_name)) {
            names.emplace_back(entry->d_name);
        }
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace properties
