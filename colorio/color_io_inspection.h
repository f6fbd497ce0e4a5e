#pragma once

#include <memory>

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

/// Contents of the active config beyond the published names: for programs that show or check configs. Hosts
/// do not need it. Results are empty or false without a manager and when memory is short. Main thread only.
class COLORIO_API ColorIOInspection {
public:
    /// Fields that color spaces and named transforms share; empty where the config does not set them.
    struct Entry {
        CoreString name;                   ///< Without its family.
        CoreString family;                 ///< As in the config.
        CoreString description;            ///< May have several lines.
        CoreString encoding;               ///< "scene-linear", "log" and so on.
        CoreVector<CoreString> aliases;    ///< Other names that the config accepts.
        CoreVector<CoreString> categories; ///< "file-io" and so on.
        bool is_active = true; ///< Inactive ones are not published, but the config finds them by name.
    };

    /// A color space.
    struct ColorSpace : Entry {
        bool is_display_referred = false; ///< Else scene-referred.
        bool is_data = false;             ///< Never converted.
        CoreString interop_id;            ///< Of configs of version 2.5 and newer; else empty.
    };

    /// A named transform. A direction that the config does not define is the inverse of the other.
    struct NamedTransform : Entry {
        bool has_forward = false; ///< The config defines the forward direction.
        bool has_inverse = false; ///< The config defines the inverse direction.
    };

    /// A view of a display; fields are empty where the config does not set them.
    struct View {
        CoreString display;         ///< Its display.
        CoreString name;            ///< Its name.
        CoreString color_space;     ///< Without its family; published or not.
        CoreString family;          ///< Of that color space.
        CoreString named_transform; ///< Used instead of a color space.
        CoreString view_transform;  ///< Applied before the color space.
        CoreString looks;           ///< The list as written in the config.
        CoreString description;     ///< May have several lines.
        bool is_shared = false;     ///< One of the config's shared views.
    };

    /// What the file rules of the config say about a path.
    struct FileRule {
        CoreString name;        ///< Empty when the config has no file rules, as those of version 1.
        CoreString color_space; ///< As the rule spells it: a name, a role or an alias.
        bool is_default = false;
    };

    /// During its lifetime, conversions made on its thread with the active config look up each color space
    /// once. For checks of whole configs; the config must not change meanwhile.
    class COLORIO_API Batch {
    public:
        /// Starts a batch; without a config or memory it has no effect.
        Batch();
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        struct Memo;
        std::unique_ptr<Memo> memo;
    };

    /// All color spaces, inactive ones included, in the order of the config.
    static CoreVector<ColorSpace> get_color_spaces();
    /// All named transforms, inactive ones included, in the order of the config.
    static CoreVector<NamedTransform> get_named_transforms();
    /// Names of the looks, in the order of the config.
    static CoreVector<CoreString> get_looks();
    /// Names of the view transforms, in the order of the config.
    static CoreVector<CoreString> get_view_transforms();
    /// Whether the config assigns the role; otherwise the module chooses a color space for it.
    static bool has_role(const CoreString& role);
    /// Absolute paths where the LUT and CDL files of the config may be, each once; they need not exist.
    static CoreVector<CoreString> get_source_files();
    /// A view; only `display` and `name` are set when it does not exist.
    static View get_view(const CoreString& display, const CoreString& view);
    /// Views that the config's active displays and active views exclude.
    static CoreVector<View> get_hidden_views();

    /// The first file rule that matches `path`.
    static FileRule find_file_rule(const CoreString& path);

    /// Whether the config can make the directions that it defines for a view transform, which no conversion
    /// applies alone. When it cannot, OpenColorIO's message is logged at level 1 after "OCIO exception: ".
    static bool try_view_transform(const CoreString& name);
};
