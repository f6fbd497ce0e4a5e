#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_array.h"
#include "host/core/core_string.h"
#include "host/gmath/gmath_vec4.h"

/// Converts colors: configured once for a pair of color spaces, a pair of CDLs or a color space and a view,
/// then applied to pixels and buffers or turned into a shader. It keeps its conversion until it is configured
/// again, even when the manager changes its config. Applying is const and thread-safe. Several threads may
/// each configure a converter while the manager's config stays the same.
/// Failures are logged and reported as false or the empty string; without memory for its state a converter
/// fails in every operation. Only OpenColorIO's exceptions while applying and making shaders reach the
/// caller.
class COLORIO_API ColorIOConverter {
public:
    /// Dialect of the shader text.
    enum GlslVersion : unsigned int {
        GLSL_VERSION_LEGACY = 0, ///< GLSL 1.20: texture3D.
        GLSL_VERSION_CORE = 1    ///< Core profile, 1.30 and later: texture.
    };

    /// Uses the manager that exists now; once it is destroyed nothing can be configured.
    ColorIOConverter();
    ~ColorIOConverter();
    ColorIOConverter(const ColorIOConverter&) = delete;
    ColorIOConverter& operator=(const ColorIOConverter&) = delete;

    /// From one color space to another; names may have a family. False for equal or empty names (a bypass,
    /// which does not change `is_configured`) and for every failure.
    bool configure(const CoreString& source, const CoreString& destination);
    /// Undoes one CDL and applies another; an unknown name means "No CDL". Returns the same as `configure`.
    bool configure_CDL(const CoreString& source, const CoreString& destination);
    /// From a color space through a view. Returns the same as `configure`.
    bool configure_for_display(const CoreString& input, const CoreString& display, const CoreString& view);
    /// The same for "DISPLAY.VIEW"; the view may contain further full stops.
    bool configure_for_display(CoreBasicString input, CoreBasicString display_view);

    /// True when the last configuration other than a bypass succeeded.
    bool is_configured() const;
    /// True when configured and not a bypass.
    bool is_enabled() const;

    /// Converts red, green, blue, alpha in place. True for a bypass; false when not configured.
    bool convert_pixel(GMathVec4<float>& pixel) const;
    /// Converts width x height pixels of `channels` interleaved floats without gaps in place (3 or more
    /// channels; those after the fourth are unchanged). False, and pixels unchanged, unless enabled and for
    /// an empty image. Throws OpenColorIO's exceptions, for example for fewer than 3 channels.
    bool convert_buffer(float* data, unsigned int width, unsigned int height, unsigned int channels) const;
    /// The same for one plane per channel; `a` may be null.
    bool convert_buffers(float* r, float* g, float* b, float* a, unsigned int width,
                         unsigned int height) const;

    /// GLSL text of `vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d)` and the 32 x 32 x 32 RGB
    /// floats of `lut3d`, red fastest, ready to upload. False, and outputs unchanged, unless enabled. Throws
    /// OpenColorIO's exceptions.
    bool get_gpu_shader_data(CoreString& text, CoreArray<float>& lut, GlslVersion version) const;

    /// `name`, or the scene_linear role's color space for "Use scene_linear", when it is a label of
    /// "color_space"; else the empty string.
    CoreString get_color_space(const CoreString& name) const;
    /// Edge of `lut3d`: 32.
    unsigned int get_lut_3d_edge_size() const;
    /// Bytes that hosts account for one converter: a constant, not its real size.
    unsigned long long get_memory_size() const;

private:
    friend class ColorIOEvaluation;
    friend class ColorIOTransforms;

    struct State;

    template <class Configure>
    bool settle(Configure&& configure);
    template <class Make>
    bool configure_with(Make&& make);

    State* state;
};
