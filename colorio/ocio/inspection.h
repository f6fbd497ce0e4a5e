#pragma once

#include <string>
#include <vector>

#include "colorio/ocio/types.h"

/// What a configuration holds, in more detail than conversions need: for programs that show or check it.
/// On 1.x every space is scene-referred and active, and there is nothing else but looks.
namespace ocio {

/// What spaces and named transforms say of themselves.
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
};

struct NamedTransformFacts : EntryFacts {
    bool has_forward = false; ///< the direction is stated; the library makes the other by inversion
    bool has_inverse = false;
};

struct ViewFacts {
    std::string color_space;     ///< its own name, where the view gives a role or another name of it
    std::string family;          ///< of that space
    std::string named_transform; ///< what stands in place of a color space
    std::string view_transform;
    std::string looks; ///< as the configuration lists them
    std::string description;
    bool is_shared = false;
};

/// All of them, inactive ones included, in the order of the configuration.
std::vector<SpaceFacts> describe_spaces(const ConstConfigRcPtr& config);
std::vector<NamedTransformFacts> describe_named_transforms(const ConstConfigRcPtr& config);
/// All empty for an unknown view.
ViewFacts describe_view(const ConstConfigRcPtr& config, const std::string& display, const std::string& view);

std::vector<std::string> list_looks(const ConstConfigRcPtr& config);
std::vector<std::string> list_view_transforms(const ConstConfigRcPtr& config);

/// Throws when no processor can be made of the look, applied forwards in its process space.
void try_look(const ConstConfigRcPtr& config, const std::string& name);
/// Throws when no processor can be made of a direction that the view transform states, or when there is no
/// such view transform.
void try_view_transform(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
