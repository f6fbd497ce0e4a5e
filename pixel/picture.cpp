#include "pixel/picture.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "pixel/kernels.h"

namespace pixel {

namespace {

/// Rows at least this wide are worth blocks of their own when there are gaps between rows.
constexpr std::size_t WIDE_ROW = BLOCK_PIXELS / 2;

void set_count(Block& block, std::size_t count) {
    block.count = count;
    block.padded = round_up_to_lanes(count);
    for (float* plane : {block.plane[0], block.plane[1], block.plane[2], block.plane[3]}) {
        std::fill(plane + count, plane + block.padded, 0.0f);
    }
}

void run_all(const std::vector<Stage>& stages, Block& block) {
    for (const Stage& stage : stages) {
        run(stage, block);
    }
}

/// Pixels in front of the first one that starts a cache line; 0 when none does. Vectors as long as a line
/// would otherwise take two of them each.
std::size_t pixels_before_line(const float* pixels, std::size_t channels) {
    constexpr std::uintptr_t LINE = 64;
    auto at = reinterpret_cast<std::uintptr_t>(pixels);
    for (std::size_t i = 0; i < LINE / sizeof(float); ++i, at += channels * sizeof(float)) {
        if (at % LINE == 0) {
            return i;
        }
    }
    return 0;
}

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

/// Walks over a picture in pieces that do not cross a row.
class Walk {
public:
    Walk(std::size_t width, std::size_t height) : width_(width), total_(width * height) {}

    bool at_end() const { return position_ == total_; }
    std::size_t row() const { return position_ / width_; }
    std::size_t column() const { return position_ % width_; }
    /// The rest of the row, at most `limit` pixels; moves past it.
    std::size_t take(std::size_t limit) {
        const std::size_t count = std::min(limit, width_ - column());
        position_ += count;
        return count;
    }

private:
    std::size_t width_, total_;
    std::size_t position_ = 0;
};

/// Calls `piece(row, column, pixels before it in the block, length)` until the block has `limit` pixels or
/// the picture ends.
template <class F>
std::size_t for_block(Walk& walk, std::size_t limit, F&& piece) {
    std::size_t filled = 0;
    while (filled < limit && !walk.at_end()) {
        const std::size_t row = walk.row(), column = walk.column();
        const std::size_t length = walk.take(limit - filled);
        piece(row, column, filled, length);
        filled += length;
    }
    return filled;
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

/// Whether results depend on alpha or change it. A matrix counts even with a column of zeros: an infinite
/// alpha makes NaN of them.
bool needs_alpha(const Stage& stage) {
    if (const auto* diagonal = std::get_if<DiagonalStage>(&stage)) {
        return diagonal->active[3];
    }
    if (const auto* power = std::get_if<PowerStage>(&stage)) {
        return power->active[3];
    }
    return std::holds_alternative<MatrixStage>(stage) || std::holds_alternative<ToeStage>(stage);
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

void run_pixel(const std::vector<Stage>& stages, float* rgba) {
    Block block;
    block.count = 1;
    block.padded = round_up_to_lanes(1);
    for (std::size_t c = 0; c < 4; ++c) {
        std::fill(block.plane[c], block.plane[c] + block.padded, rgba[c]);
    }
    run_all(stages, block);
    for (std::size_t c = 0; c < 4; ++c) {
        rgba[c] = block.plane[c][0];
    }
}

void run_planar(const std::vector<Stage>& stages, float* const planes[4], std::size_t width,
                std::size_t height, std::ptrdiff_t row_stride) {
    if (row_stride == static_cast<std::ptrdiff_t>(width)) { // one long row
        width *= height;
        height = 1;
    }
    const bool with_alpha = planes[3] && std::any_of(stages.begin(), stages.end(), needs_alpha);
    const std::size_t channels = with_alpha ? 4 : 3;
    const auto offset = [&](std::size_t row, std::size_t column) {
        return static_cast<std::ptrdiff_t>(row) * row_stride + static_cast<std::ptrdiff_t>(column);
    };
    Block block;
    std::size_t limit = first_length(planes[0], 1, width * height);
    for (Walk read(width, height); !read.at_end(); limit = BLOCK_PIXELS) {
        Walk write = read;
        const std::size_t count = for_block(
            read, limit, [&](std::size_t row, std::size_t column, std::size_t at, std::size_t length) {
                take(planes, channels, {offset(row, column), at, length}, block);
            });
        set_count(block, count);
        block.lookahead.clear();
        if (!read.at_end()) {
            const std::size_t column = read.column(), ahead = std::min(BLOCK_PIXELS, width - column);
            const std::ptrdiff_t next = offset(read.row(), column);
            for (std::size_t c = 0; c < channels; ++c) {
                block.lookahead.add(planes[c] + next, ahead);
            }
        }
        if (channels == 3) {
            std::fill(block.plane[3], block.plane[3] + block.padded, 0.0f);
        }
        run_all(stages, block);
        for_block(write, limit, [&](std::size_t row, std::size_t column, std::size_t at, std::size_t length) {
            give(block, channels, {offset(row, column), at, length}, planes);
        });
    }
}

} // namespace pixel
