#pragma once

#include <cstdint>

namespace image {

/// What a message to a reader process asks for, as its first value.
enum class ReaderRequest : std::uint32_t {
    OPEN, ///< Working folder, path and count of threads (int, 0 for all cores). Answered with OPENED.
    READ, ///< Position of a part (uint32_t), with the memory for its pixels or without. Answered with READ.
};

/// What it answers.
enum class ReaderAnswer : std::uint32_t {
    OPENED, ///< Name of the format, and a list of parts: subimage, level, spec.
    READ,   ///< Comes with new memory unless that of the request has room.
    FAILED, ///< The whole message for the user.
};

} // namespace image
