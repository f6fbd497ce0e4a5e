#pragma once

#include <chrono>
#include <functional>
#include <vector>

namespace image {

/// One end of a connection over which two processes send each other messages, one at a time, each with a
/// descriptor or without. Does not own the socket.
class MessageChannel {
public:
    explicit MessageChannel(int socket) : socket(socket) {}

    struct Received {
        std::vector<char> bytes;
        int descriptor = -1; ///< The receiver closes it.
    };
    /// What became of an attempt to receive.
    enum class Outcome { RECEIVED, CLOSED, GIVEN_UP };

    /// False when the other end is gone.
    bool send(const std::vector<char>& bytes, int descriptor = -1) const;
    /// Waits for a message. Asks `goes_on` now and then, and gives up when it says no; empty waits for ever.
    /// A message that cannot be one counts as the end of the connection.
    Outcome receive(Received& message, const std::function<bool()>& goes_on = {}) const;

private:
    Outcome receive_bytes(char* bytes, std::size_t size, int* descriptor,
                          const std::function<bool()>& goes_on) const;
    bool wait_for_bytes(const std::function<bool()>& goes_on) const;

    int socket;
};

} // namespace image
