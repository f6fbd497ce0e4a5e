#pragma once

#include <cstdint>
#include <vector>

#include "image/byte_source.h"

namespace image {

/// Where an OpenEXR file has its chunks: blocks of lines, or tiles.
struct ExrLayout {
    struct Part {
        bool is_tiled = false;
        bool is_deep = false;
        std::uint64_t chunk_count = 0; ///< 0 if the header does not say it.
    };

    bool has_parts = false;   ///< Every chunk starts with the number of its part.
    std::vector<Part> parts;  ///< At least one.
    std::uint64_t tables = 0; ///< Position of the tables of the chunks' positions, one for each part.

    /// Position of the first byte behind the number of the part and the place of a chunk in it.
    std::uint64_t skip_place(std::uint64_t chunk, const Part& part) const {
        return chunk + (has_parts ? 4 : 0) + (part.is_tiled ? 16 : 4);
    }
};

/// Reads the headers. Throws EndReached for other files, and for more parts than real files have.
ExrLayout read_exr_layout(ByteSource& file);

} // namespace image
