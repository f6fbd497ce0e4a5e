#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "pixel/block.h"
#include "pixel/stage.h"

/// Helpers for dividing packed and planar images into blocks.
namespace pixel {

/// With gaps between rows, rows of at least this width (pixels) get separate blocks.
constexpr std::size_t WIDE_ROW = BLOCK_PIXELS / 2;
/// Bytes of a cache line.
constexpr std::uintptr_t LINE_BYTES = 64;

/// Sets the count of pixels that are copied into the block, and clears the padding.
inline void set_count(Block& block, std::size_t count) {
    block.count = count;
    block.padded = round_up_to_lanes(count);
    for (auto& plane : block.own) {
        std::fill(plane + count, plane + block.padded, 0.0f);
    }
}

/// Runs all stages on a block.
inline void run_all(const std::vector<Stage>& stages, Block& block) {
    for (const Stage& stage : stages) {
        run(stage, block);
    }
}

/// Count of pixels before the first one that starts a cache line; 0 when none does. Otherwise vectors as long
/// as a line would access two lines each.
inline std::size_t pixels_before_line(const float* pixels, std::size_t channels) {
    auto at = reinterpret_cast<std::uintptr_t>(pixels);
    for (std::size_t i = 0; i < LINE_BYTES / sizeof(float); ++i, at += channels * sizeof(float)) {
        if (at % LINE_BYTES == 0) {
            return i;
        }
    }
    return 0;
}

/// Iterates over an image in pieces that do not cross a row.
class Walk {
public:
    Walk(std::size_t width, std::size_t height) : width_(width), total_(width * height) {}

    /// Whether all pixels were taken.
    bool at_end() const { return position_ == total_; }
    /// Row of the next pixel.
    std::size_t row() const { return position_ / width_; }
    /// Column of the next pixel.
    std::size_t column() const { return position_ % width_; }
    /// Takes the rest of the row, at most `limit` pixels; returns their count.
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
/// the image ends. Returns the count of pixels.
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

} // namespace pixel
