#pragma once

namespace pixel {

/// Converts a single pixel of four floats in place. Thread-safe; its `context` must outlive it.
struct PixelFunction {
    void (*kernel)(const void* context, float* rgba); ///< the code
    const void* context;                              ///< its constants, not owned

    void operator()(float* rgba) const { kernel(context, rgba); }
};

} // namespace pixel
