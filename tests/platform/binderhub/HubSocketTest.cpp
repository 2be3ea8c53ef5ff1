#include "HubSocket.h"

#include <android-base/cmsg.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <cstring>

namespace binderhub {
namespace {

using android::base::SendFileDescriptors;
using android::base::Socketpair;
using android::base::unique_fd;
using Bytes = std::vector<uint8_t>;

constexpr size_t kLimit = 1024 * 1024;
constexpr size_t kHead = sizeof(HubHeader);

struct HubSocketTest : testing::Test {
    HubSocketTest() { Socketpair(SOCK_SEQPACKET | SOCK_CLOEXEC, &near, &far); }

    int send(size_t payloadSize, const std::vector<int>& descriptors) {
        payload.assign(payloadSize, 0x5a);
        return sendMessage(near.get(), {{}, commands, payload, descriptors}, false);
    }

    int receive() { return receiver.receive(far.get(), false, kLimit, &got); }

    unique_fd near, far;
    Bytes commands = {1, 2, 3, 4}, payload;
    Receiver receiver;
    InMessage got;
};

TEST_F(HubSocketTest, carriesPayloadsOfAllSizesBesideDescriptors) {
    const size_t whole = kMaxDatagram - kHead - commands.size();
    for (const size_t size : {size_t{0}, size_t{9}, whole, whole + 1, kLimit}) {
        unique_fd one, other;
        ASSERT_TRUE(Socketpair(SOCK_STREAM, &one, &other));
        ASSERT_EQ(0, send(size, {one.get(), other.get()})) << size;
        ASSERT_EQ(1, receive()) << size;
        EXPECT_EQ(Bytes(got.commands.begin(), got.commands.end()), commands);
        EXPECT_EQ(Bytes(got.payload.begin(), got.payload.end()), payload);
        EXPECT_EQ((got.header.flags & kPayloadInFile) != 0, size > whole);
        ASSERT_EQ(2u, got.descriptors.size());
        EXPECT_EQ(1, write(got.descriptors[0].get(), "x", 1));
        EXPECT_EQ(1, recv(other.get(), commands.data(), 1, MSG_DONTWAIT));
    }
    EXPECT_EQ(-EINVAL, send(0, std::vector<int>(kMaxDescriptors + 1, near.get())));
}

TEST_F(HubSocketTest, refusesBrokenFramingAndClosesWhatCameWithIt) {
    // What, flags, sizes of commands, payload and datagram.
    const std::tuple<const char*, uint32_t, uint32_t, uint32_t, size_t> rows[] = {
            {"no whole header", 0, 0, 0, kHead - 1},
            {"commands cut", 0, 8, 0, kHead + 4},
            {"sizes overflow", 0, UINT32_MAX, 1, kHead},
            {"surplus", 0, 4, 4, kHead + 9},
            {"too long", 0, 0, kMaxDatagram, kHead + kMaxDatagram},
            {"not a file", kPayloadInFile, 0, 1, kHead},
            {"inline and in a file", kPayloadInFile, 0, 5, kHead + 5},
            {"file shorter", kPayloadInFile, 0, 6, kHead},
            {"file over the limit", kPayloadInFile, 0, kLimit + 1, kHead},
    };
    for (const auto& [what, flags, commandSize, payloadSize, size] : rows) {
        const unique_fd file(memfd_create("payload", MFD_CLOEXEC));
        ASSERT_EQ(0, ftruncate(file.get(), payloadSize > kLimit ? kLimit + 1 : 5));
        unique_fd kept, sent;
        ASSERT_TRUE(Socketpair(SOCK_STREAM, &kept, &sent));
        const HubHeader header = {kExchange, flags, commandSize, payloadSize, 0, 0, 0};
        Bytes bytes(kHead + kMaxDatagram);
        memcpy(bytes.data(), &header, kHead);
        ASSERT_GT(SendFileDescriptors(near, bytes.data(), size,
                                      payloadSize == 1 ? near.get() : file.get(), sent.get()),
                  0)
                << what;
        EXPECT_EQ(-EPROTO, receive()) << what;
        sent.reset();
        char end = 0;
        EXPECT_EQ(0, recv(kept.get(), &end, 1, MSG_DONTWAIT)) << what << ": still open";
    }
}

TEST_F(HubSocketTest, saysWhyNothingCame) {
    EXPECT_EQ(-EAGAIN, receive());
    ASSERT_EQ(0, send(kLimit, {near.get()}));
    rlimit usual = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &usual));
    const rlimit none = {3, usual.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    EXPECT_EQ(1, receive());
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &usual));
    EXPECT_TRUE(got.descriptorsLost && got.descriptors.empty() && got.payload.empty());
    near.reset();
    EXPECT_EQ(0, receive());
    std::swap(near, far);
    EXPECT_EQ(-EPIPE, send(0, {}));
}

}  // namespace
}  // namespace binderhub
