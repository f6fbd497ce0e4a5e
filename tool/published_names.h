#pragma once

#include <string>
#include <vector>

namespace tool {

// What the running module publishes, in its order.

struct PublishedSpace {
    std::string label; ///< "Tavelion|sRGB"; the bare name where there is no family.
    std::string family;
    std::string name;
};

struct PublishedView {
    std::string label; ///< "Tavelion.sRGB".
    std::string display;
    std::string view;
    std::string color_space; ///< Label of what the view shows; empty when the configuration does not say.
    bool is_default;
};

struct PublishedRole {
    std::string role; ///< As configurations write it, for example "scene_linear".
    std::string color_space;
};

std::vector<PublishedSpace> get_published_spaces();
std::vector<PublishedView> get_published_views();
/// Scene-linear first. A role that the configuration does not assign shows what the module takes instead.
std::vector<PublishedRole> get_published_roles();

/// Label of the colour space that `name` means: a label, a bare name, or a role. Throws CommandError with the
/// nearest names; `config_name` says where it was sought.
std::string resolve_color_space(const std::string& name, const std::string& config_name);

/// The view that a label ("Tavelion.sRGB") or a display and a view name. Throws like `resolve_color_space`.
PublishedView resolve_view(const std::string& display, const std::string& view,
                           const std::string& config_name);

} // namespace tool
