#include "service/DumpWriter.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <string.h>
#include <unistd.h>

#include <android-base/unique_fd.h>

#include <chrono>
#include <future>
#include <thread>

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

TEST(DumpWriter, isHeldFiveSecondsByOneReaderWhoDoesNotRead) {
    Pipe pipe;
    pipe.fill();
    const auto writeAndTime = [&] {
        const Clock::time_point start = Clock::now();
        EXPECT_FALSE(writeForReader(pipe.in.get(), "text"));
        EXPECT_EQ(errno, ETIMEDOUT);
        return Clock::now() - start;
    };
    auto one = std::async(std::launch::async, writeAndTime);
    auto other = std::async(std::launch::async, writeAndTime);
    const auto [least, most] = std::minmax({one.get(), other.get()});
    EXPECT_LT(least, std::chrono::seconds(4)) << "one waits, the other does not";
    EXPECT_GE(most, std::chrono::seconds(5));
    Pipe free;
    EXPECT_TRUE(writeForReader(free.in.get(), "text")) << "also while or after one is held";
}

TEST(DumpWriter, saysThatTheReaderIsGone) {
    signal(SIGPIPE, SIG_IGN);  // as the daemon does
    Pipe pipe;
    pipe.out.reset();
    EXPECT_FALSE(writeForReader(pipe.in.get(), "text"));
    EXPECT_EQ(errno, EPIPE);
}
