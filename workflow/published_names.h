#pragma once

#include <string>
#include <vector>

namespace workflow {

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
    bool shows_unpublished = false; ///< The module does not publish that color space.
    std::string named_transform;    ///< What the view shows in place of a color space.
    std::string view_transform;
    std::string looks;
    std::string description;
    bool is_shared = false;
    bool is_default = false;
};

struct PublishedRole {
    std::string role; ///< As configurations write it, for example "scene_linear".
    std::string color_space;
    bool is_in_config =
        false; ///< Else the module chose the space, which the configuration may not even have.
};

std::vector<PublishedSpace> get_published_spaces();
std::vector<PublishedView> get_published_views();
/// Views that the configuration's lists of active displays and views hide.
std::vector<PublishedView> get_hidden_views();
/// Scene-linear first. A role that the configuration does not assign shows what the module takes instead.
std::vector<PublishedRole> get_published_roles();

/// Family, separator and name, as the module labels a color space.
std::string make_label(const std::string& family, const std::string& name);

} // namespace workflow
