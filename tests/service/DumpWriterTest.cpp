#include "service/DumpWriter.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <string.h>
#include <unistd.h>

#include <android-base/unique_fd.h>

#include <atomic>
#include <cctype>
#include <chrono>
#include <future>
#include <thread>

#include "support/Await.h"
#include "support/Files.h"

using android::base::unique_fd;
using kelvo::writeForReader;

namespace {

using Clock = std::chrono::steady_clock;

struct Pipe {
    Pipe() { EXPECT_TRUE(android::base::Pipe(&out, &in)); }
    /** Until nothing more goes in. */
    void fill() {
        fcntl(in.get(), F_SETFL, O_NONBLOCK);
        const std::string block(4096, 'x');
        while (write(in.get(), block.data(), block.size()) > 0) {
        }
        fcntl(in.get(), F_SETFL, 0);
    }

    unique_fd out;
    unique_fd in;
};

}  // namespace

TEST(DumpWriter, writesForReadersWhoReadLateAmongSignals) {
    signal(SIGUSR1, [](int) {});
    const std::string text(100000, 't');  // more than a pipe holds
    for (int reader = 0; reader < 2; ++reader) {
        Pipe pipe;
        bool isWritten = false;
        std::thread writer([&] {
            isWritten = writeForReader(pipe.in.get(), text);
            pipe.in.reset();
        });
        std::string got;
        char block[4096];
        for (ssize_t count = 0; (count = read(pipe.out.get(), block, sizeof(block))) > 0;) {
            got.append(block, static_cast<size_t>(count));
            pthread_kill(writer.native_handle(), SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));  // the pipe is full again
        }
        writer.join();
        EXPECT_TRUE(isWritten);
        EXPECT_TRUE(got == text);
    }
}

TEST(DumpWriter, waitsForOneReaderAtATime) {
    Pipe pipe;
    pipe.fill();
    std::atomic<pid_t> waiter = 0;
    auto one = std::async(std::launch::async, [&] {
        waiter = gettid();
        return writeForReader(pipe.in.get(), "text");
    });
    ASSERT_TRUE(await([&] {
        // The number of the system call in which it sleeps, or a word.
        const std::string call = readFile("/proc/self/task/" + std::to_string(waiter) + "/syscall");
        return waiter != 0 && !call.empty() && std::isdigit(call.front()) != 0;
    })) << "it waits";
    EXPECT_FALSE(writeForReader(pipe.in.get(), "text"));
    EXPECT_EQ(errno, ETIMEDOUT);
    Pipe free;
    EXPECT_TRUE(writeForReader(free.in.get(), "text"));
    char block[4096];
    EXPECT_GT(read(pipe.out.get(), block, sizeof(block)), 0);
    EXPECT_TRUE(one.get());
}

TEST(DumpWriter, givesAReaderWhoDoesNotReadFiveSeconds) {
    Pipe pipe;
    pipe.fill();
    const Clock::time_point start = Clock::now();
    EXPECT_FALSE(writeForReader(pipe.in.get(), "text"));
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_GE(Clock::now() - start, std::chrono::seconds(5));
}

TEST(DumpWriter, saysThatTheReaderIsGone) {
    signal(SIGPIPE, SIG_IGN);  // as the daemon does
    Pipe pipe;
    pipe.out.reset();
    EXPECT_FALSE(writeForReader(pipe.in.get(), "text"));
    EXPECT_EQ(errno, EPIPE);
    EXPECT_FALSE(writeForReader(-1, "text")) << "a request without a descriptor";
    EXPECT_EQ(errno, EBADF);
}
