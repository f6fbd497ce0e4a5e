#include "pixel/image.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "pixel/image_blocks.h"
#include "pixel/kernels.h"

namespace pixel {

namespace {

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

/// The shape that all planes of an image have.
struct PlaneShape {
    std::size_t width, height;
    std::ptrdiff_t row_stride; ///< in floats
};

/// Whether rows of two planes share memory. Rows of planes may lie between each other.
bool planes_meet(const float* a, const float* b, const PlaneShape& shape) {
    const auto from = reinterpret_cast<std::uintptr_t>(a), to = reinterpret_cast<std::uintptr_t>(b);
    const std::uintptr_t bytes = from < to ? to - from : from - to;
    const std::uintptr_t width = shape.width * sizeof(float);
    const auto stride = static_cast<std::uintptr_t>(std::abs(shape.row_stride)) * sizeof(float);
    if (stride == 0) {
        return bytes < width;
    }
    const std::uintptr_t rows = bytes / stride, rest = bytes % stride;
    return (rows < shape.height && rest < width) || (rows + 1 < shape.height && stride - rest < width);
}

/// Converts planes block by block. Where rows are wide, and all planes reach cache lines at the same pixels,
/// whole blocks are converted where they lie; pixels of narrow rows, and those before the first line and
/// behind the last one of a row, are copied into a block. So is everything where planes share
/// memory, as those of a gray image may: each channel is converted from what came in, and the last one
/// stays.
class PlanarRun {
public:
    PlanarRun(const std::vector<Stage>& stages, float* const planes[4], const PlaneShape& shape)
        : stages_(stages), planes_(planes), shape_(shape) {
        const bool with_alpha = planes[3] && std::any_of(stages.begin(), stages.end(), needs_alpha);
        channels_ = with_alpha ? 4 : 3;
    }

    void run() {
        if (shape_.width >= WIDE_ROW && reach_lines_together() && are_apart()) {
            for (std::size_t row = 0; row < shape_.height; ++row) {
                run_row(static_cast<std::ptrdiff_t>(row) * shape_.row_stride);
            }
        } else {
            run_narrow_rows();
        }
    }

private:
    bool reach_lines_together() const {
        const std::size_t before = pixels_before_line(planes_[0], 1);
        return std::all_of(planes_, planes_ + channels_,
                           [&](const float* plane) { return pixels_before_line(plane, 1) == before; }) &&
               reinterpret_cast<std::uintptr_t>(planes_[0] + before) % LINE_BYTES == 0;
    }

    bool are_apart() const {
        for (std::size_t c = 1; c < channels_; ++c) {
            for (std::size_t other = 0; other < c; ++other) {
                if (planes_meet(planes_[other], planes_[c], shape_)) {
                    return false;
                }
            }
        }
        return true;
    }

    /// `offset` of the row, in floats, from the start of each plane.
    void run_row(std::ptrdiff_t offset) {
        const std::size_t before = std::min(shape_.width, pixels_before_line(planes_[0] + offset, 1));
        run_copied(offset, before);
        std::size_t done = before;
        while (shape_.width - done >= MAX_LANES) {
            const std::size_t length = std::min(BLOCK_PIXELS, (shape_.width - done) / MAX_LANES * MAX_LANES);
            run_in_place(offset + static_cast<std::ptrdiff_t>(done), length, shape_.width - done - length);
            done += length;
        }
        run_copied(offset + static_cast<std::ptrdiff_t>(done), shape_.width - done);
    }

    void run_in_place(std::ptrdiff_t offset, std::size_t length, std::size_t behind) {
        block_.count = block_.padded = length;
        for (std::size_t c = 0; c < channels_; ++c) {
            block_.plane[c] = planes_[c] + offset;
        }
        look_ahead(offset + static_cast<std::ptrdiff_t>(length), std::min(behind, BLOCK_PIXELS));
        convert();
    }

    void run_copied(std::ptrdiff_t offset, std::size_t length) {
        if (length > 0) {
            block_.lookahead.clear();
            take(planes_, channels_, {offset, 0, length}, block_);
            run_own(length);
            give(block_, channels_, {offset, 0, length}, planes_);
        }
    }

    void run_own(std::size_t count) {
        set_count(block_, count);
        for (std::size_t c = 0; c < channels_; ++c) {
            block_.plane[c] = block_.own[c];
        }
        convert();
    }

    void convert() {
        if (channels_ == 3) {
            std::fill(block_.own[3], block_.own[3] + block_.padded, 0.0f);
        }
        run_all(stages_, block_);
    }

    void look_ahead(std::ptrdiff_t offset, std::size_t length) {
        block_.lookahead.clear();
        for (std::size_t c = 0; c < channels_ && length > 0; ++c) {
            block_.lookahead.add(planes_[c] + offset, length);
        }
    }

    void run_narrow_rows() {
        const auto offset = [&](std::size_t row, std::size_t column) {
            return static_cast<std::ptrdiff_t>(row) * shape_.row_stride + static_cast<std::ptrdiff_t>(column);
        };
        for (Walk read(shape_.width, shape_.height); !read.at_end();) {
            Walk write = read;
            const auto take_piece = [&](std::size_t row, std::size_t column, std::size_t at,
                                        std::size_t length) {
                take(planes_, channels_, {offset(row, column), at, length}, block_);
            };
            const std::size_t count = for_block(read, BLOCK_PIXELS, take_piece);
            if (!read.at_end()) {
                look_ahead(offset(read.row(), read.column()),
                           std::min(BLOCK_PIXELS, shape_.width - read.column()));
            } else {
                block_.lookahead.clear();
            }
            run_own(count);
            const auto give_piece = [&](std::size_t row, std::size_t column, std::size_t at,
                                        std::size_t length) {
                give(block_, channels_, {offset(row, column), at, length}, planes_);
            };
            for_block(write, BLOCK_PIXELS, give_piece);
        }
    }

    const std::vector<Stage>& stages_;
    float* const* planes_;
    PlaneShape shape_;
    std::size_t channels_;
    Block block_;
};

} // namespace

void run_planar(const std::vector<Stage>& stages, float* const planes[4], std::size_t width,
                std::size_t height, std::ptrdiff_t row_stride) {
    if (row_stride == static_cast<std::ptrdiff_t>(width)) { // one long row
        width *= height;
        height = 1;
    }
    PlanarRun(stages, planes, {width, height, row_stride}).run();
}

} // namespace pixel
