#include "image/message_channel.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace image {

namespace {

/// Metadata of an image takes some kilobytes; a thumbnail and an ICC profile take some megabytes.
constexpr std::uint64_t MAX_MESSAGE_BYTES = 512u << 20;
constexpr int POLL_MILLISECONDS = 20;

union DescriptorSpace {
    char bytes[CMSG_SPACE(sizeof(int))];
    cmsghdr alignment;
};

void attach_descriptor(msghdr& header, DescriptorSpace& space, int descriptor) {
    std::memset(&space, 0, sizeof(space));
    header.msg_control = space.bytes;
    header.msg_controllen = sizeof(space.bytes);
    cmsghdr* control = CMSG_FIRSTHDR(&header);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(control), &descriptor, sizeof(int));
}

int get_attached_descriptor(msghdr& header) {
    int descriptor = -1;
    const cmsghdr* control = CMSG_FIRSTHDR(&header);
    if (control != nullptr && control->cmsg_level == SOL_SOCKET && control->cmsg_type == SCM_RIGHTS &&
        control->cmsg_len == CMSG_LEN(sizeof(int)))
        std::memcpy(&descriptor, CMSG_DATA(control), sizeof(int));
    return descriptor;
}

} // namespace

bool MessageChannel::send(const std::vector<char>& bytes, int descriptor) const {
    const std::uint64_t size = bytes.size();
    iovec pieces[2] = {{const_cast<std::uint64_t*>(&size), sizeof(size)},
                       {const_cast<char*>(bytes.data()), bytes.size()}};
    msghdr header = {};
    header.msg_iov = pieces;
    header.msg_iovlen = 2;
    DescriptorSpace space;
    if (descriptor >= 0)
        attach_descriptor(header, space, descriptor);
    for (std::size_t left = sizeof(size) + bytes.size(); left > 0;) {
        const ssize_t sent = sendmsg(socket, &header, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        left -= static_cast<std::size_t>(sent);
        header.msg_control = nullptr;
        header.msg_controllen = 0;
        auto done = static_cast<std::size_t>(sent);
        for (iovec& piece : pieces) {
            const std::size_t step = std::min(done, piece.iov_len);
            piece.iov_base = static_cast<char*>(piece.iov_base) + step;
            piece.iov_len -= step;
            done -= step;
        }
    }
    return true;
}

bool MessageChannel::wait_for_bytes(const std::function<bool()>& goes_on) const {
    pollfd wanted = {socket, POLLIN, 0};
    for (;;) {
        const int ready = poll(&wanted, 1, goes_on ? POLL_MILLISECONDS : -1);
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return true; // the following read reports the error
        if (goes_on && !goes_on())
            return false;
    }
}

MessageChannel::Outcome MessageChannel::receive_bytes(char* bytes, std::size_t size, int* descriptor,
                                                      const std::function<bool()>& goes_on) const {
    while (size > 0) {
        if (!wait_for_bytes(goes_on))
            return Outcome::GIVEN_UP;
        iovec piece = {bytes, size};
        msghdr header = {};
        header.msg_iov = &piece;
        header.msg_iovlen = 1;
        DescriptorSpace space = {};
        if (descriptor != nullptr) {
            header.msg_control = space.bytes;
            header.msg_controllen = sizeof(space.bytes);
        }
        const ssize_t received = recvmsg(socket, &header, MSG_CMSG_CLOEXEC);
        if (received < 0 && errno == EINTR)
            continue;
        if (received <= 0)
            return Outcome::CLOSED;
        if (descriptor != nullptr && *descriptor < 0)
            *descriptor = get_attached_descriptor(header);
        bytes += received;
        size -= static_cast<std::size_t>(received);
    }
    return Outcome::RECEIVED;
}

MessageChannel::Outcome MessageChannel::receive(Received& message,
                                                const std::function<bool()>& goes_on) const {
    message = {};
    std::uint64_t size = 0;
    Outcome outcome =
        receive_bytes(reinterpret_cast<char*>(&size), sizeof(size), &message.descriptor, goes_on);
    if (outcome == Outcome::RECEIVED && size > MAX_MESSAGE_BYTES)
        outcome = Outcome::CLOSED;
    if (outcome == Outcome::RECEIVED) {
        message.bytes.resize(size);
        outcome = receive_bytes(message.bytes.data(), size, nullptr, goes_on);
    }
    if (outcome != Outcome::RECEIVED && message.descriptor >= 0) {
        close(message.descriptor);
        message.descriptor = -1;
    }
    return outcome;
}

} // namespace image
