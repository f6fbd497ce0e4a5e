#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "pixel/block.h"
#include "pixel/stage.h"

/// What packed and planar images have in common on their way through blocks.
namespace pixel {

/// Rows at least this wide are worth blocks of their own when there are gaps between rows.
constexpr std::size_t WIDE_ROW = BLOCK_PIXELS / 2;
constexpr std::uintptr_t LINE_BYTES = 64;

/// For pixels that are brought into the block.
inline void set_count(Block& block, std::size_t count) {
    block.count = count;
    block.padded = round_up_to_lanes(count);
    for (auto& plane : block.own) {
        std::fill(plane + count, plane + block.padded, 0.0f);
    }
}

inline void run_all(const std::vector<Stage>& stages, Block& block) {
    for (const Stage& stage : stages) {
        run(stage, block);
    }
}

/// Pixels in front of the first one that starts a cache line; 0 when none does. Vectors as long as a line
/// would otherwise take two of them each.
inline std::size_t pixels_before_line(const float* pixels, std::size_t channels) {
    auto at = reinterpret_cast<std::uintptr_t>(pixels);
    for (std::size_t i = 0; i < LINE_BYTES / sizeof(float); ++i, at += channels * sizeof(float)) {
        if (at % LINE_BYTES == 0) {
            return i;
        }
    }
    return 0;
}

/// Walks over an image in pieces that do not cross a row.
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
/// the image ends.
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
