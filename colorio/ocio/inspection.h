#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

/// Contents of a config in more detail than conversions need: for programs that show or check it. On 1.x
/// every color space is scene-referred and active, and only looks exist besides.
namespace ocio {

/// Fields that color spaces and named transforms share.
struct EntryFacts {
    std::string name;
    std::string family;
    std::string description;
    std::string encoding;
    std::vector<std::string> aliases;
    std::vector<std::string> categories;
    bool is_active = true;
};

struct SpaceFacts : EntryFacts {
    bool is_display_referred = false;
    bool is_data = false;
    std::string interop_id; ///< since version 2.5 of OpenColorIO
};

struct NamedTransformFacts : EntryFacts {
    bool has_forward = false; ///< defined by the config; OpenColorIO inverts it for the other direction
    bool has_inverse = false;
};

struct ViewFacts {
    std::string color_space;     ///< its name, also where the view uses a role or an alias
    std::string family;          ///< of that color space
    std::string named_transform; ///< used instead of a color space
    std::string view_transform;
    std::string looks; ///< the list as written in the config
    std::string description;
    bool is_shared = false;
};

/// All color spaces, inactive ones included, in the order of the config.
std::vector<SpaceFacts> describe_spaces(const ConstConfigRcPtr& config);
std::vector<NamedTransformFacts> describe_named_transforms(const ConstConfigRcPtr& config);
/// All empty for an unknown view.
ViewFacts describe_view(const ConstConfigRcPtr& config, const std::string& display, const std::string& view);

std::vector<std::string> list_looks(const ConstConfigRcPtr& config);
std::vector<std::string> list_view_transforms(const ConstConfigRcPtr& config);

/// Throws when no processor can be made for a direction that the view transform defines, or when there is no
/// such view transform.
void try_view_transform(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
