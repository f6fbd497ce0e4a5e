#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "pixel/ops.h"
#include "pixel/pixel_function.h"

namespace pixel {

/// Where the floats of a packed image lie. Strides count floats; 0 stands for "no gaps".
struct PackedLayout {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t channels = 4; ///< at least 3: red, green, blue, alpha; further ones are left alone
    std::ptrdiff_t pixel_stride = 0;
    std::ptrdiff_t row_stride = 0;
};

/// The operations in words, as given and as they are carried out.
struct Description {
    std::vector<std::string> given;
    std::vector<std::string> simplified;
};

struct TraceStep {
    std::string operation;
    std::array<float, 4> value; ///< red, green, blue, alpha after the operation
};

/// A chain of operations made ready to run on pixels, on the widest vectors the processor has. Pixels are
/// changed in place; nothing is allocated after construction; one program may be used by several threads at
/// once. Red, green and blue depend on alpha only where an operation says so; an image without alpha reads
/// as alpha 0.
class Program {
public:
    /// Throws std::invalid_argument when an operation contradicts itself (a table of the wrong size, say).
    explicit Program(OpChain chain);
    ~Program();
    Program(Program&&) noexcept;
    Program& operator=(Program&&) noexcept;

    /// True when pixels come out as they went in.
    bool is_identity() const;

    void apply_packed(float* data, std::size_t width, std::size_t height, std::size_t channels) const;
    /// Throws std::invalid_argument for fewer than 3 channels, or a pixel stride below the channel count.
    void apply_packed(float* data, const PackedLayout& layout) const;
    /// One image per channel, all of the same shape; `a` may be null. `row_stride` counts floats, 0: no
    /// gaps.
    void apply_planar(float* r, float* g, float* b, float* a, std::size_t width, std::size_t height,
                      std::ptrdiff_t row_stride = 0) const;
    /// `rgba` points at four floats. Gives the bits that a pixel of an image gets, on the instruction set
    /// that was in use when the program was made.
    void apply_pixel(float* rgba) const;
    /// That, to be called directly; valid as long as the program, which may be moved.
    PixelFunction pixel_function() const;

    Description describe() const;
    /// The pixel after each of the simplified operations, in order.
    std::vector<TraceStep> trace(const std::array<float, 4>& rgba) const;

private:
    struct Impl;
    std::unique_ptr<const Impl> impl_;
};

} // namespace pixel
