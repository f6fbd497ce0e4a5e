#pragma once

#include <cstdint>

namespace image {

/// Kind of a message to a reader process; its first value.
enum class ReaderRequest : std::uint32_t {
    OPEN,      ///< Working folder, path and count of threads (int, 0 for all cores). Answered with OPENED.
    READ,      ///< Position of a part (uint32_t), optionally with memory for its pixels. Answered with READ.
    READ_DEEP, ///< Position of a deep part (uint32_t). Answered with READ_DEEP.
};

/// Kind of an answer; its first value.
enum class ReaderAnswer : std::uint32_t {
    OPENED,    ///< Name of the format, and a list of parts: subimage, level, spec.
    READ,      ///< Comes with new memory if that of the request is missing or too small.
    READ_DEEP, ///< Size of the packed pixels in bytes (uint64_t); comes with memory that holds them.
    FAILED,    ///< The complete error message for the user.
};

} // namespace image
