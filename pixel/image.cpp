#include "pixel/image.h"

#include <algorithm>
#include <cstring>

#include "pixel/image_blocks.h"
#include "pixel/kernels.h"

namespace pixel {

namespace {

/// Length of the first of several blocks.
std::size_t first_length(const float* pixels, std::size_t channels, std::size_t count) {
    const std::size_t before = count > BLOCK_PIXELS ? pixels_before_line(pixels, channels) : 0;
    return before > 0 ? before : std::min(BLOCK_PIXELS, count);
}

void run_gapless(const std::vector<Stage>& stages, float* pixels, std::size_t channels, std::size_t count,
                 Block& block) {
    std::size_t length = first_length(pixels, channels, count);
    for (std::size_t done = 0; done < count; done += length, length = std::min(BLOCK_PIXELS, count - done)) {
        float* const from = pixels + done * channels;
        set_count(block, length);
        block.lookahead.clear();
        if (const std::size_t rest = count - done - block.count) {
            block.lookahead.add(from + block.count * channels, std::min(BLOCK_PIXELS, rest) * channels);
        }
        unpack(from, channels, block);
        run_all(stages, block);
        pack(block, channels, from);
    }
}

/// Narrow rows and pixels with gaps go through a gapless copy of a block's size.
void run_scattered(const std::vector<Stage>& stages, float* data, const PackedLayout& layout, Block& block) {
    const std::size_t channels = std::min<std::size_t>(layout.channels, 4);
    float copy[4 * BLOCK_PIXELS];
    const auto pixel = [&](std::size_t row, std::size_t column) {
        return data + static_cast<std::ptrdiff_t>(row) * layout.row_stride +
               static_cast<std::ptrdiff_t>(column) * layout.pixel_stride;
    };
    Walk read(layout.width, layout.height);
    while (!read.at_end()) {
        Walk write = read;
        const std::size_t count = for_block(
            read, BLOCK_PIXELS, [&](std::size_t row, std::size_t column, std::size_t at, std::size_t length) {
                const float* from = pixel(row, column);
                for (std::size_t i = 0; i < length; ++i, from += layout.pixel_stride) {
                    std::memcpy(copy + (at + i) * channels, from, channels * sizeof(float));
                }
            });
        run_gapless(stages, copy, channels, count, block);
        for_block(write, BLOCK_PIXELS,
                  [&](std::size_t row, std::size_t column, std::size_t at, std::size_t length) {
                      float* to = pixel(row, column);
                      for (std::size_t i = 0; i < length; ++i, to += layout.pixel_stride) {
                          std::memcpy(to, copy + (at + i) * channels, channels * sizeof(float));
                      }
                  });
    }
}

} // namespace

void run_packed(const std::vector<Stage>& stages, float* data, const PackedLayout& layout) {
    Block block;
    const auto row_length = static_cast<std::ptrdiff_t>(layout.width) * layout.pixel_stride;
    const bool gapless_rows =
        layout.pixel_stride == static_cast<std::ptrdiff_t>(layout.channels) && layout.channels <= 4;
    if (gapless_rows && (layout.row_stride == row_length || layout.height == 1)) {
        run_gapless(stages, data, layout.channels, layout.width * layout.height, block);
    } else if (gapless_rows && layout.width >= WIDE_ROW) {
        for (std::size_t row = 0; row < layout.height; ++row) {
            run_gapless(stages, data + static_cast<std::ptrdiff_t>(row) * layout.row_stride, layout.channels,
                        layout.width, block);
        }
    } else {
        run_scattered(stages, data, layout, block);
    }
}

} // namespace pixel
