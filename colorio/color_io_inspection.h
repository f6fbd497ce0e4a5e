#pragma once

#include <memory>

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

/// What the active configuration holds beyond the published names: for programs that show or check it. Hosts
/// need none of it. Everything is empty, and every trial fails, while no manager runs and when memory is
/// short.
class COLORIO_API ColorIOInspection {
public:
    /// What color spaces and named transforms say of themselves.
    struct Entry {
        CoreString name;
        CoreString family;
        CoreString description;
        CoreString encoding;
        CoreVector<CoreString> aliases;
        CoreVector<CoreString> categories;
        bool is_active = true; ///< Inactive spaces are not published; the configuration finds them by name.
    };

    struct ColorSpace : Entry {
        bool is_display_referred = false; ///< Else scene-referred.
        bool is_data = false;             ///< Never converted.
    };

    struct NamedTransform : Entry {
        bool has_forward = false; ///< The direction is stated; the other is its inverse.
        bool has_inverse = false;
    };

    struct View {
        CoreString display;
        CoreString name;
        CoreString color_space;     ///< Its plain name, published or not.
        CoreString family;          ///< Of that color space.
        CoreString named_transform; ///< What the view shows in place of a color space.
        CoreString view_transform;
        CoreString looks; ///< As the configuration lists them.
        CoreString description;
        bool is_shared = false;
    };

    /// While it lives, conversions that its thread makes in the active config look each color space up once.
    /// For checks of whole configs; the config must stay as it is meanwhile.
    class COLORIO_API Batch {
    public:
        Batch();
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        struct Memo;
        std::unique_ptr<Memo> memo;
    };

    /// All of them, in the order of the configuration.
    static CoreVector<ColorSpace> get_color_spaces();
    static CoreVector<NamedTransform> get_named_transforms();
    static CoreVector<CoreString> get_looks();
    static CoreVector<CoreString> get_view_transforms();
    /// Whether the configuration itself assigns the role; where it does not, the module takes a space of its
    /// own choice.
    static bool has_role(const CoreString& role);
    /// Absolute paths at which the LUT and CDL files that the config names may lie, each once; they need not
    /// exist.
    static CoreVector<CoreString> get_source_files();
    /// Only the names are set for a view that does not exist.
    static View get_view(const CoreString& display, const CoreString& view);
    /// The views that lists of active displays and views hide.
    static CoreVector<View> get_hidden_views();

    // Whether the configuration can make a conversion. When it cannot, OpenColorIO's words are logged
    // at level 1 behind "OCIO exception: ".

    /// Between two names that it knows: of color spaces and named transforms, inactive ones and other names
    /// included, without families.
    static bool try_conversion(const CoreString& source, const CoreString& destination);
    /// A look, forwards, in its process space.
    static bool try_look(const CoreString& name);
    /// The directions that a view transform states.
    static bool try_view_transform(const CoreString& name);
};
