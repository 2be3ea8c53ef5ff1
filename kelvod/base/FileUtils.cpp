#include "base/FileUtils.h"

#include <android-base/unique_fd.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <memory>

#include "base/DeviceRoot.h"
#include "base/Log.h"

namespace kelvo {

namespace {

constexpr size_t kMaxNodeText = 127;  // bytes

/**
 * The path below the device root; lives until this thread's next call. Nodes are read many times a
 * second, so the memory is kept.
 */
const char* hostPath(const std::string& path) {
    thread_local std::string host;
    host = deviceRoot();
    host += path;
    return host.c_str();
}

}  // namespace

std::string getFile(const std::string& path) {
    const android::base::unique_fd fd(open(hostPath(path), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0) {
        KLOGD("open %s failed(%s)", path.c_str(), strerror(errno));
        return {};
    }
    char text[kMaxNodeText + 1] = {};
    if (read(fd.get(), text, kMaxNodeText) < 0) {
        KLOGE("read file %s failed.(%s)", path.c_str(), strerror(errno));
        return {};
    }
    return text;
}

int writeFile(const std::string& path, const std::string& content) {
    const android::base::unique_fd fd(open(hostPath(path), O_WRONLY | O_CLOEXEC));
    if (fd.get() < 0) {
        KLOGE("open %s failed(%s)", path.c_str(), strerror(errno));
        return -1;
    }
    if (write(fd.get(), content.data(), content.size()) < 1) {
        KLOGE("write file %s failed.(%s)", path.c_str(), strerror(errno));
        return -1;
    }
    return 0;
}

int getMtkChipVersion(const std::string& path, tag_chipid& record) {
    static_assert(sizeof(record) == 20, "the kernel's record has five words");
    const std::unique_ptr<FILE, decltype(&fclose)> file(fopen(hostPath(path), "rbe"), fclose);
    if (!file) {
        return -1;
    }
    const size_t items = fread(&record, sizeof(record), 1, file.get());
    if (items != 1) {
        KLOGE("fread error, ret:%d\n", static_cast<int>(items));
    }
    KLOGE("hw_code 1 0x%x  0x%x V1 node\n", record.hw_code, record.hw_subcode);
    return items == 1 ? 0 : -1;
}

}  // namespace kelvo
