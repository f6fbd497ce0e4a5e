#pragma once

namespace pixel {

/// Converts a pixel that comes alone: four floats, in place. Refers to what it was made of, which must
/// outlive it; may be called by several threads at once.
struct PixelFunction {
    void (*kernel)(const void* context, float* rgba);
    const void* context;

    void operator()(float* rgba) const { kernel(context, rgba); }
};

} // namespace pixel
