#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "pixel/ops.h"
#include "pixel/packed_layout.h"
#include "pixel/pixel_function.h"

namespace pixel {

/// The operations in words.
struct Description {
    std::vector<std::string> given;      ///< as passed to the constructor
    std::vector<std::string> simplified; ///< as they are computed
};

/// One of the simplified operations and its result.
struct TraceStep {
    std::string operation;      ///< in words
    std::array<float, 4> value; ///< red, green, blue, alpha after the operation
};

/// A chain of operations compiled for the widest vectors of the processor. Pixels are changed in place;
/// applying allocates no memory and is thread-safe. Red, green and blue depend on alpha only in operations
/// that say so; an image without alpha is converted with alpha 0.
class Program {
public:
    /// Throws std::invalid_argument for invalid operations (for example a LUT with the wrong count of
    /// entries).
    explicit Program(OpChain chain);
    ~Program();
    Program(Program&&) noexcept;
    Program& operator=(Program&&) noexcept;

    /// True when pixels are unchanged.
    bool is_identity() const;

    /// An image without gaps; the first channels are red, green, blue, alpha. Throws std::invalid_argument
    /// for fewer than 3 channels.
    void apply_packed(float* data, std::size_t width, std::size_t height, std::size_t channels) const;
    /// Throws std::invalid_argument for fewer than 3 channels, or a pixel stride below the channel count.
    void apply_packed(float* data, const PackedLayout& layout) const;
    /// One image per channel, all of the same shape; `a` may be null. `row_stride` counts floats, 0: no
    /// gaps.
    void apply_planar(float* r, float* g, float* b, float* a, std::size_t width, std::size_t height,
                      std::ptrdiff_t row_stride = 0) const;
    /// Converts four floats. The result has the same bits as a pixel of an image, on the instruction set in
    /// use at construction.
    void apply_pixel(float* rgba) const;
    /// The same as a function to be called directly; valid as long as the program, which may be moved.
    PixelFunction pixel_function() const;

    /// The operations in words.
    Description describe() const;
    /// `rgba` after each of the simplified operations, in order.
    std::vector<TraceStep> trace(const std::array<float, 4>& rgba) const;

private:
    struct Impl;
    std::unique_ptr<const Impl> impl_;
};

} // namespace pixel
