#include "ServiceDump.h"

#include <android-base/unique_fd.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <thread>

#include "Output.h"
#include "Services.h"

namespace kelvoctl {

namespace {

using android::base::unique_fd;
using Take = std::function<void(const char* bytes, size_t size)>;

constexpr char kConfigVersion[] = "\nConfig version:";

/**
 * Hands on what comes until no writer is left, and gives what taking it threw. A pipe of our own
 * keeps the service from SIGPIPE.
 */
std::exception_ptr stream(int fd, const Take& take) {
    std::array<char, 4096> bytes{};
    std::exception_ptr failure;
    ssize_t size = 0;
    while ((size = TEMP_FAILURE_RETRY(read(fd, bytes.data(), bytes.size()))) > 0) {
        try {
            if (failure == nullptr) {
                take(bytes.data(), static_cast<size_t>(size));
            }
        } catch (...) {
            failure = std::current_exception();
        }
    }
    return failure;
}

}  // namespace

void dumpService(const std::string& name, const std::vector<std::string>& args, const Take& take) {
    const android::sp<android::IBinder> service = findService(name);
    android::Vector<android::String16> arguments;
    for (const std::string& argument : args) {
        arguments.add(toString16(argument));
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Failure(strerror(errno), "pipe");
    }
    const unique_fd reader(ends[0]);
    unique_fd writer(ends[1]);
    // The call lasts until the service has written all: its text is taken meanwhile.
    android::status_t status = android::OK;
    std::thread call([&] {
        status = service->dump(writer, arguments);
        writer.reset();
    });
    const std::exception_ptr failure = stream(reader, take);
    call.join();
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
    checkStatus(status, "dump");
}

std::string dumpedConfigVersion() {
    std::string text;
    dumpService(kKelvo, {}, [&text](const char* bytes, size_t size) { text.append(bytes, size); });
    const size_t found = text.find(kConfigVersion);
    if (found == std::string::npos) {
        return "";
    }
    const size_t begin = found + strlen(kConfigVersion);
    return text.substr(begin, text.find('\n', begin) - begin);
}

}  // namespace kelvoctl
