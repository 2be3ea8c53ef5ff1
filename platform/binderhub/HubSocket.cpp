#include "HubSocket.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

using android::base::unique_fd;

namespace binderhub {

namespace {

/** Room for the descriptors of one message, a payload file among them. */
struct Control {
    alignas(cmsghdr) uint8_t bytes[CMSG_SPACE((kMaxDescriptors + 1) * sizeof(int))];
};

iovec part(std::span<const uint8_t> bytes) {
    return {const_cast<uint8_t*>(bytes.data()), bytes.size()};
}

void putDescriptors(std::span<const int> descriptors, Control* control, msghdr* message) {
    message->msg_control = control->bytes;
    message->msg_controllen = CMSG_SPACE(descriptors.size_bytes());
    cmsghdr* header = CMSG_FIRSTHDR(message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
    memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
}

void takeDescriptors(msghdr* message, std::vector<unique_fd>* descriptors) {
    for (cmsghdr* header = CMSG_FIRSTHDR(message); header != nullptr;
         header = CMSG_NXTHDR(message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) {
            continue;
        }
        const size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int fd = -1;
            memcpy(&fd, CMSG_DATA(header) + i * sizeof(int), sizeof(fd));
            descriptors->emplace_back(fd);
        }
    }
}

int sendParts(int socket, std::span<iovec> parts, std::span<const int> descriptors, bool wait) {
    msghdr message = {};
    message.msg_iov = parts.data();
    message.msg_iovlen = parts.size();
    Control control;
    if (!descriptors.empty()) {
        putDescriptors(descriptors, &control, &message);
    }
    const int flags = MSG_NOSIGNAL | (wait ? 0 : MSG_DONTWAIT);
    return TEMP_FAILURE_RETRY(sendmsg(socket, &message, flags)) < 0 ? -errno : 0;
}

/** A file with this content; -1 and errno when it cannot be had. */
unique_fd fileWith(std::span<const uint8_t> content) {
    unique_fd file(memfd_create("binder-payload", MFD_CLOEXEC));
    while (file.get() >= 0 && !content.empty()) {
        const ssize_t size = TEMP_FAILURE_RETRY(write(file.get(), content.data(), content.size()));
        if (size < 0) {
            return {};
        }
        content = content.subspan(static_cast<size_t>(size));
    }
    return file;
}

int sendWithFile(int socket, HubHeader header, const OutMessage& message, bool wait) {
    const unique_fd file = fileWith(message.payload);
    if (file.get() < 0) {
        return -errno;
    }
    header.flags |= kPayloadInFile;
    std::vector<int> descriptors = {file.get()};
    descriptors.insert(descriptors.end(), message.descriptors.begin(), message.descriptors.end());
    std::array parts = {iovec{&header, sizeof(header)}, part(message.commands)};
    return sendParts(socket, parts, descriptors, wait);
}

/** Reading it never blocks and never waits for another process. */
bool isMemoryFile(int fd, size_t size) {
    struct stat state = {};
    return fstat(fd, &state) == 0 && state.st_size == static_cast<off_t>(size) &&
           fcntl(fd, F_GET_SEALS) >= 0;
}

bool readFile(int fd, std::vector<uint8_t>* content) {
    size_t done = 0;
    while (done < content->size()) {
        const ssize_t size = TEMP_FAILURE_RETRY(pread(
                fd, content->data() + done, content->size() - done, static_cast<off_t>(done)));
        if (size <= 0) {
            return false;  // an error, or the sender has cut the file meanwhile
        }
        done += static_cast<size_t>(size);
    }
    return true;
}

bool takeFilePayload(InMessage* message) {
    if (message->descriptorsLost) {
        message->header.payloadSize = 0;
        return true;
    }
    if (message->descriptors.empty() || message->header.payloadSize == 0) {
        return false;
    }
    const unique_fd file = std::move(message->descriptors.front());
    message->descriptors.erase(message->descriptors.begin());
    const size_t size = message->header.payloadSize;
    if (!isMemoryFile(file.get(), size)) {
        return false;
    }
    message->filePayload.resize(size);
    message->payload = message->filePayload;
    return readFile(file.get(), &message->filePayload);
}

/** Sets what lies in the datagram, and whether it is all there and no more. */
bool splitDatagram(std::span<const uint8_t> datagram, size_t payloadLimit, InMessage* message) {
    HubHeader& header = message->header;
    if (datagram.size() < sizeof(header)) {
        return false;
    }
    memcpy(&header, datagram.data(), sizeof(header));
    const std::span<const uint8_t> rest = datagram.subspan(sizeof(header));
    if (header.commandSize > rest.size() || header.payloadSize > payloadLimit) {
        return false;
    }
    message->commands = rest.first(header.commandSize);
    message->payload = rest.subspan(header.commandSize);
    if ((header.flags & kPayloadInFile) != 0) {
        return message->payload.empty() && takeFilePayload(message);
    }
    return message->payload.size() == header.payloadSize;
}

}  // namespace

int sendMessage(int socket, const OutMessage& message, bool wait) {
    const size_t textSize = sizeof(HubHeader) + message.commands.size();
    if (message.descriptors.size() > kMaxDescriptors || textSize > kMaxDatagram ||
        message.payload.size() > UINT32_MAX) {
        return -EINVAL;
    }
    HubHeader header = message.header;
    header.flags &= ~static_cast<uint32_t>(kPayloadInFile);
    header.commandSize = static_cast<uint32_t>(message.commands.size());
    header.payloadSize = static_cast<uint32_t>(message.payload.size());
    if (message.payload.size() > kMaxDatagram - textSize) {
        return sendWithFile(socket, header, message, wait);
    }
    std::array parts = {iovec{&header, sizeof(header)}, part(message.commands),
                        part(message.payload)};
    return sendParts(socket, parts, message.descriptors, wait);
}

Receiver::Receiver() : mBytes(std::make_unique_for_overwrite<uint8_t[]>(kMaxDatagram)) {}

int Receiver::receive(int socket, bool wait, size_t payloadLimit, InMessage* message) {
    message->commands = {};
    message->payload = {};
    message->descriptors.clear();
    message->filePayload = {};
    iovec bytes = {mBytes.get(), kMaxDatagram};
    Control control;
    msghdr datagram = {};
    datagram.msg_iov = &bytes;
    datagram.msg_iovlen = 1;
    datagram.msg_control = control.bytes;
    datagram.msg_controllen = sizeof(control.bytes);
    const ssize_t size = recvmsg(socket, &datagram, MSG_CMSG_CLOEXEC | (wait ? 0 : MSG_DONTWAIT));
    if (size < 0) {
        return -errno;
    }
    takeDescriptors(&datagram, &message->descriptors);
    message->descriptorsLost = (datagram.msg_flags & MSG_CTRUNC) != 0;
    if (message->descriptorsLost || size == 0) {
        message->descriptors.clear();
    }
    if (size == 0) {
        return 0;
    }
    const std::span<const uint8_t> all(mBytes.get(), static_cast<size_t>(size));
    if ((datagram.msg_flags & MSG_TRUNC) != 0 || !splitDatagram(all, payloadLimit, message)) {
        message->commands = {};
        message->payload = {};
        message->descriptors.clear();
        return -EPROTO;
    }
    return 1;
}

}  // namespace binderhub
