#include <android-base/unique_fd.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <thread>

#include "Commands.h"
#include "Services.h"

namespace kelvoctl {

namespace {

using android::base::unique_fd;

/**
 * Prints what comes until no writer is left, and gives what printing threw. A pipe of our own keeps
 * the service from SIGPIPE.
 */
std::exception_ptr stream(int fd, const Output& output) {
    std::array<char, 4096> bytes{};
    std::exception_ptr failure;
    ssize_t size = 0;
    while ((size = TEMP_FAILURE_RETRY(read(fd, bytes.data(), bytes.size()))) > 0) {
        try {
            if (failure == nullptr) {
                output.write(bytes.data(), static_cast<size_t>(size));
            }
        } catch (...) {
            failure = std::current_exception();
        }
    }
    return failure;
}

void dump(const std::string& name, const std::vector<std::string>& args, const Output& output) {
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
    const std::exception_ptr failure = stream(reader, output);
    call.join();
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
    checkStatus(status, "dump");
}

}  // namespace

void addDump(CLI::App& app, Output& output) {
    static std::string name = kKelvo;
    CLI::App* const command =
            app.add_subcommand("dump", "Diagnostic text of a service, as it comes");
    command->add_option("--service", name, "The service that is asked")
            ->type_name("SERVICE")
            ->capture_default_str();
    command->prefix_command();
    command->footer("Everything after the options goes to the service: kelvoctl dump config");
    command->callback([&output, command] { dump(name, command->remaining(), output); });
}

}  // namespace kelvoctl
