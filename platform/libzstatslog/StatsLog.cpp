#include "zstatslog.h"

#include <fcntl.h>
#include <json/writer.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace ZentaFramework {

namespace {

std::string recordLine(int32_t atomId, const char* text, int32_t value) {
    // Written by hand for the order of the members, which jsoncpp would sort.
    return "{\"id\":" + std::to_string(atomId) + ",\"text\":" + Json::valueToQuotedString(text) +
           ",\"value\":" + std::to_string(value) + "}\n";
}

int openLog() {
    const char* root = getenv("KELVO_ROOT");
    const std::string data = std::string(root != nullptr ? root : "") + "/data";
    mkdir(data.c_str(), 0755);
    mkdir((data + "/zstats").c_str(), 0755);
    return open((data + "/zstats/atoms.jsonl").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC,
                0644);
}

}  // namespace

int stats_write(int32_t atomId, const char* text, int32_t value) {
    // Kept open: appending keeps lines whole, and records come often while a phone heats up.
    static const int log = openLog();
    if (log < 0) {
        return -EIO;
    }
    const std::string line = recordLine(atomId, text, value);
    return write(log, line.data(), line.size()) == static_cast<ssize_t>(line.size()) ? 0 : -errno;
}

}  // namespace ZentaFramework
