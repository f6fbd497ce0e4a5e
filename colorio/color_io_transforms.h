#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"

class ColorIOConverter;

/// Configures converters for what a config offers besides conversions between published color spaces and to
/// views: for programs that convert images; not needed by hosts. Names are those of the config, without
/// families. Each operation returns false when the conversion cannot be made, and logs and reports why; the
/// converter is then not configured. Several threads may each configure a converter while the manager's
/// config stays the same.
class COLORIO_API ColorIOTransforms {
public:
    enum Direction {
        DIRECTION_FORWARD, ///< As the named transform or the file is defined.
        DIRECTION_INVERSE  ///< The inverse of that.
    };

    /// Between any two color spaces of the config, inactive ones, roles and aliases included.
    static bool configure(ColorIOConverter& converter, const CoreString& source,
                          const CoreString& destination);
    /// The looks of a list such as "film, -warm", whose second look is undone, for pixels that are in `space`
    /// and stay there.
    static bool configure_looks(ColorIOConverter& converter, const CoreString& space,
                                const CoreString& looks);
    /// From any color space of the config to a view.
    static bool configure_view(ColorIOConverter& converter, const CoreString& space,
                               const CoreString& display, const CoreString& view);
    /// From what a view shows back to `space`. OpenColorIO 1.1 cannot.
    static bool configure_inverse_view(ColorIOConverter& converter, const CoreString& display,
                                       const CoreString& view, const CoreString& space);
    /// A named transform by itself. OpenColorIO 1.1 has none.
    static bool configure_named_transform(ColorIOConverter& converter, const CoreString& name,
                                          Direction direction);
    /// The LUT or transform file at `path`.
    static bool configure_file(ColorIOConverter& converter, const CoreString& path, Direction direction);
};
