#include "xml/file_input.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>

#include "files/input_file.h"

namespace xml {

namespace {

constexpr std::size_t TERMINATOR = 4;
constexpr std::size_t FIRST_ROOM = 64 * 1024;

// The room to begin with: that of the file, and one byte by which its end is noticed.
std::size_t expected_room(const files::Descriptor& file) {
    struct stat status = {};
    if (fstat(file.get(), &status) != 0 || status.st_size <= 0)
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

bool read_all(const files::Descriptor& file, OwnedText& text) {
    std::size_t room = expected_room(file);
    if (room > MAX_TEXT + 1 || !resize(text, room))
        return false;
    for (;;) {
        const ssize_t count = files::read_some(file, text.buffer + text.length, room - text.length);
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
    auto opened = files::open_for_reading(path != nullptr ? path : "");
    if (!opened)
        return false;
    OwnedText text;
    if (!read_all(*opened, text)) {
        std::free(text.buffer);
        return false;
    }
    std::memset(text.buffer + text.length, 0, TERMINATOR);
    file = text;
    return true;
}

} // namespace xml
