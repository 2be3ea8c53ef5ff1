#include "sim/AtomLog.h"

#include <fcntl.h>
#include <json/reader.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <system_error>

namespace sim {

namespace {

constexpr char kPath[] = "/data/zstats/atoms.jsonl";

void takeLine(const std::string& line, const AtomLog::Take& take) {
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    Json::Value record;
    if (reader->parse(line.data(), line.data() + line.size(), &record, nullptr)) {
        take(record["id"].asInt(), record["text"].asString(), record["value"].asInt());
    }
}

}  // namespace

AtomLog::AtomLog(DeviceTree& tree) {
    tree.setNode(kPath, "");
    const std::string path = tree.hostPath(kPath);
    mFd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (mFd < 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
}

AtomLog::~AtomLog() {
    close(mFd);
}

void AtomLog::takeRecords(const Take& take) {
    std::array<char, 4096> bytes;
    for (ssize_t got = read(mFd, bytes.data(), bytes.size()); got > 0;
         got = read(mFd, bytes.data(), bytes.size())) {
        mPending.append(bytes.data(), static_cast<size_t>(got));
    }
    size_t start = 0;
    for (size_t end = mPending.find('\n'); end != std::string::npos;
         end = mPending.find('\n', start)) {
        takeLine(mPending.substr(start, end - start), take);
        start = end + 1;
    }
    mPending.erase(0, start);
}

}  // namespace sim
