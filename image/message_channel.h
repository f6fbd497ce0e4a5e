#pragma once

#include <chrono>
#include <functional>
#include <vector>

namespace image {

/// One end of a connection on which two processes exchange messages, each with or without a file descriptor.
/// Does not own the socket. For one thread at a time.
class MessageChannel {
public:
    /// `socket` is a connected stream socket that supports descriptors (AF_UNIX); it must outlive the object.
    explicit MessageChannel(int socket) : socket(socket) {}

    /// A message, and the descriptor that was sent with it.
    struct Received {
        std::vector<char> bytes;
        int descriptor = -1; ///< Owned by the receiver; -1 for none.
    };
    /// Result of `receive`.
    enum class Outcome { RECEIVED, CLOSED, GIVEN_UP };

    /// Sends a message; does not take over `descriptor`. Returns false when the other end is closed, or
    /// the message cannot be sent for another reason.
    bool send(const std::vector<char>& bytes, int descriptor = -1) const;
    /// Waits for a message. Calls `goes_on` every 20 ms and gives up when it returns false; an empty one
    /// waits forever. An invalid message counts as a closed connection.
    Outcome receive(Received& message, const std::function<bool()>& goes_on = {}) const;

private:
    Outcome receive_bytes(char* bytes, std::size_t size, int* descriptor,
                          const std::function<bool()>& goes_on) const;
    bool wait_for_bytes(const std::function<bool()>& goes_on) const;

    int socket;
};

} // namespace image
