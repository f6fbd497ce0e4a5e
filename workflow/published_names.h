#pragma once

#include <string>
#include <vector>

namespace workflow {

// What the running module publishes, in its order. All functions that take no argument need an open
// session, and are called in its thread. Lists are empty when the active config has no such entries.

struct PublishedSpace {
    std::string label;  ///< Unique: "Tavelion|sRGB"; the name if there is no family.
    std::string family; ///< May be empty.
    std::string name;
};

/// Properties of a color space or a named transform in a config, other than its name.
struct EntryFacts {
    std::string encoding; ///< "scene-linear", "log" and so on; may be empty.
    std::vector<std::string> categories;
    std::vector<std::string> aliases; ///< Other names that the config accepts.
    std::string description;          ///< May be empty, and have several lines.
};

struct DescribedSpace : PublishedSpace {
    EntryFacts facts;
    bool is_display_referred = false; ///< Else scene-referred.
    bool is_data = false;             ///< Never converted.
};

/// A named transform. A direction that the config does not define is the inverse of the other.
struct DescribedTransform {
    std::string name;
    std::string family; ///< May be empty.
    EntryFacts facts;
    bool has_forward = false;
    bool has_inverse = false;
    bool is_active = true;
};

struct PublishedView {
    std::string label; ///< Unique: "Tavelion.sRGB".
    std::string display;
    std::string view;
    std::string color_space;        ///< Label of the color space of the view; empty if it has none.
    bool shows_unpublished = false; ///< `color_space` is not published, for example because it is inactive.
    std::string named_transform;    ///< Named transform of the view, instead of a color space; may be empty.
    std::string view_transform;     ///< May be empty.
    std::string looks;              ///< Comma-separated, as in the config; may be empty.
    std::string description;
    bool is_shared = false;
    bool is_default = false;
};

struct PublishedRole {
    std::string role;        ///< As written in configs: "scene_linear".
    std::string color_space; ///< Name without family.
    /// False if the config does not assign the role; `color_space` is then the module's fallback, which the
    /// config may not have.
    bool is_in_config = false;
};

/// Without inactive color spaces.
std::vector<PublishedSpace> get_published_spaces();
/// The same with their properties in the config; takes longer.
std::vector<DescribedSpace> get_described_spaces();
/// Color spaces that the config declares inactive; they are not published.
std::vector<DescribedSpace> get_inactive_spaces();
/// All named transforms, inactive ones included.
std::vector<DescribedTransform> get_named_transforms();
/// Without hidden views.
std::vector<PublishedView> get_published_views();
/// Views hidden by the config's lists active_displays and active_views.
std::vector<PublishedView> get_hidden_views();
/// Names of the looks.
std::vector<std::string> get_published_looks();
/// The roles that the module uses, scene_linear first.
std::vector<PublishedRole> get_published_roles();

/// The reference space of a color space: "scene" or "display".
const char* get_reference_name(const DescribedSpace& space);
/// "scene-referred", "data", "display-referred, data"; the reference space only if `with_reference`.
std::string describe_kind(const DescribedSpace& space, bool with_reference);
/// The directions that the config defines: "forward", "inverse" or "both".
const char* describe_directions(const DescribedTransform& transform);
/// "default", "shared", "default, shared" or nothing.
std::string describe_flags(const PublishedView& view);

/// Label of a color space: family, separator and name.
std::string make_label(const std::string& family, const std::string& name);
/// The part of a label behind the family.
std::string remove_family(const std::string& label);

} // namespace workflow
