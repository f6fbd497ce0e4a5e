#include "xml/file_input.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace xml {

namespace {

constexpr std::size_t TERMINATOR = 4;
constexpr std::size_t FIRST_ROOM = 64 * 1024;

// A pipe that nobody writes to must not hold the caller up, so it is opened without waiting; the reads wait.
int open_for_reading(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file >= 0)
        fcntl(file, F_SETFL, fcntl(file, F_GETFL) & ~O_NONBLOCK);
    return file;
}

// The room to begin with: that of a regular file, and one byte by which its end is noticed.
std::size_t expected_room(int file) {
    struct stat status = {};
    if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0)
        return FIRST_ROOM;
    return static_cast<std::size_t>(status.st_size) + 1;
}

bool resize(OwnedText& text, std::size_t room) {
    auto* buffer = static_cast<char*>(std::realloc(text.buffer, room + TERMINATOR));
    if (buffer == nullptr)
        return false;
    text.buffer = buffer;
    return true;
}

bool read_all(int file, OwnedText& text) {
    std::size_t room = expected_room(file);
    if (room > MAX_TEXT + 1 || !resize(text, room))
        return false;
    for (;;) {
        const ssize_t count = read(file, text.buffer + text.length, room - text.length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0;
        text.length += static_cast<std::size_t>(count);
        if (text.length > MAX_TEXT)
            return false;
        if (text.length == room) {
            room = std::min(2 * room, MAX_TEXT + 1);
            if (!resize(text, room))
                return false;
        }
    }
}

} // namespace

bool read_file(const char* path, OwnedText& file) {
    const int descriptor = path != nullptr ? open_for_reading(path) : -1;
    if (descriptor < 0)
        return false;
    OwnedText text;
    const bool done = read_all(descriptor, text);
    close(descriptor);
    if (!done) {
        std::free(text.buffer);
        return false;
    }
    std::memset(text.buffer + text.length, 0, TERMINATOR);
    file = text;
    return true;
}

} // namespace xml
