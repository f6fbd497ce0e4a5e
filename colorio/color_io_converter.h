#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_array.h"
#include "host/core/core_string.h"
#include "host/gmath/gmath_vec4.h"

/// Converts colors: configured once for a pair of color spaces, a pair of CDLs or a color space and a
/// view, then applied to pixels and buffers or turned into a shader. It keeps its conversion until it is
/// configured again, whatever happens to the configuration. Applying is const and thread-safe. Several
/// threads may configure one converter each while the manager's configuration stays the same.
/// Failures are logged and answered with false or the null string, those of a converter for whose state
/// there was no memory included. Only the OpenColorIO exceptions of applying and of shaders reach the caller.
class COLORIO_API ColorIOConverter {
public:
    enum GlslVersion : unsigned int {
        GLSL_VERSION_LEGACY = 0, ///< GLSL 1.20: texture3D.
        GLSL_VERSION_CORE = 1    ///< Core profile, 1.30 and later: texture.
    };

    ColorIOConverter();
    ~ColorIOConverter();
    ColorIOConverter(const ColorIOConverter&) = delete;
    ColorIOConverter& operator=(const ColorIOConverter&) = delete;

    /// From one color space to another; names may carry a family. False for equal or empty names (a bypass,
    /// which leaves `is_configured` alone) and for every failure.
    bool configure(const CoreString& source, const CoreString& destination);
    /// From one CDL to another; a name that is not known stands for "No CDL".
    bool configure_CDL(const CoreString& source, const CoreString& destination);
    bool configure_for_display(const CoreString& input, const CoreString& display, const CoreString& view);
    /// `display_view` is a display, a full stop and a view (which may hold further full stops).
    bool configure_for_display(CoreBasicString input, CoreBasicString display_view);

    bool is_configured() const;
    /// True when configured and not a bypass.
    bool is_enabled() const;

    /// Converts red, green, blue, alpha in place. A bypass is a success; false when not configured.
    bool convert_pixel(GMathVec4<float>& pixel) const;
    /// Converts width x height pixels of `channels` interleaved floats in place (3 or more channels; those
    /// after the fourth stay). False, and nothing touched, when there is nothing to do. Throws what the
    /// OpenColorIO throws while it applies.
    bool convert_buffer(float* data, unsigned int width, unsigned int height, unsigned int channels) const;
    /// The same for one plane per channel; `a` may be null.
    bool convert_buffers(float* r, float* g, float* b, float* a, unsigned int width,
                         unsigned int height) const;

    /// GLSL text of `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)` and the 32 x 32 x 32 RGB
    /// floats of `lut3d`, red fastest, ready to upload. False, and nothing touched, unless enabled.
    bool get_gpu_shader_data(CoreString& text, CoreArray<float>& lut, GlslVersion version) const;

    /// `name` (the scene-linear role's space for "Use scene_linear") when it is a label of "color_space",
    /// else the null string.
    CoreString get_color_space(const CoreString& name) const;
    unsigned int get_lut_3d_edge_size() const;
    unsigned long long get_memory_size() const;

private:
    friend class ColorIOEvaluation;

    struct State;

    template <class Configure>
    bool settle(Configure&& configure);

    State* state;
};
