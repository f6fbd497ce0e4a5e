#include "image/byte_source.h"

#include <algorithm>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace image {

namespace {

constexpr std::size_t WINDOW = 4096;

} // namespace

ByteSource::ByteSource(const files::Descriptor& file) : file(file) {
    struct stat status = {};
    if (fstat(file.get(), &status) == 0)
        length = static_cast<std::uint64_t>(status.st_size);
}

std::uint64_t ByteSource::get(std::uint64_t position, unsigned int count, bool big_endian) {
    const unsigned char* bytes = fetch(position, count);
    std::uint64_t value = 0;
    for (unsigned int i = 0; i < count; ++i)
        value = value << 8 | bytes[big_endian ? i : count - 1 - i];
    return value;
}

bool ByteSource::matches(std::uint64_t position, std::string_view bytes) {
    return std::memcmp(fetch(position, bytes.size()), bytes.data(), bytes.size()) == 0;
}

std::string ByteSource::get_text(std::uint64_t& position) {
    std::string text;
    while (const auto character = static_cast<char>(get(position++, 1)))
        text += character;
    return text;
}

const unsigned char* ByteSource::fetch(std::uint64_t position, std::uint64_t count) {
    require(position, count);
    if (position < start || position + count > start + window.size()) {
        window.resize(std::min<std::uint64_t>(WINDOW, length - position));
        start = position;
        if (pread(file.get(), window.data(), window.size(), static_cast<off_t>(start)) !=
            static_cast<ssize_t>(window.size()))
            throw EndReached();
    }
    return window.data() + (position - start);
}

} // namespace image
