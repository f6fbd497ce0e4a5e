#pragma once

#include <memory>
#include <string>

#include "colorio/ocio/processor.h"
#include "colorio/ocio/types.h"
#include "pixel/chain.h"

namespace ocio {

/// What converts the pixels of a processor, in images and one by one: SIMD code if it supports all
/// operations, else OpenColorIO's CPU processor. Only the one that is used is made, by the constructor.
class Evaluator {
public:
    /// Uses SIMD code only if `get_fast_path()` allows it. OpenColorIO's CPU processor is made with
    /// `optimization`.
    Evaluator(const library::ConstProcessorRcPtr& processor, library::OptimizationFlags optimization);

    /// True when pixels stay as they are.
    bool is_no_op() const { return no_op_; }

    void apply(const PackedImageDesc& image) const;
    void apply(const PlanarImageDesc& image) const;
    /// Gives the bits that the pixel has in an image. Where OpenColorIO converts, that is its `applyRGBA`,
    /// whose bits are those of an image one pixel wide. Those of wider images are the same, but from 2.5 on
    /// not behind a forward 1D LUT or tetrahedral 3D LUT: there OpenColorIO rounds rows of one pixel
    /// otherwise, by a unit in the last place. A row of two in place of `applyRGBA` would take 3 to 4 times
    /// as long.
    void apply_rgba(float* pixel) const { get_pixel_function()(pixel); }
    PixelFunction get_pixel_function() const;

    /// Null where OpenColorIO converts, for the reason `get_why_not()`.
    const pixel::Program* get_program() const { return program_.get(); }
    const std::string& get_why_not() const { return why_not_; }

private:
    void make_program(const library::ConstProcessorRcPtr& optimized);

    bool no_op_;
    std::unique_ptr<const pixel::Program> program_;
    library::ConstCPUProcessorRcPtr cpu_;
    std::string why_not_;
};

} // namespace ocio
