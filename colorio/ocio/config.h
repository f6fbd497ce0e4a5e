#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

/// Empty config of version 1 with the search path ".", so that 1.x rules and CDL arithmetic apply.
ConfigRcPtr create_config();
/// Reads a config under the classic locale. A config that needs a newer OpenColorIO is reported as such, with
/// both versions.
ConstConfigRcPtr create_config_from_file(const char* path);
/// Reads the config named by the environment variable OCIO.
ConstConfigRcPtr create_config_from_env();
ConfigRcPtr create_editable_copy(const ConstConfigRcPtr& config);
void set_working_dir(const ConfigRcPtr& config, const char* folder);
const char* get_working_dir(const ConstConfigRcPtr& config);

/// What the caller knows about the views of a config: OpenColorIO searches all views of a display for each
/// question about one of them.
enum class KnownViews {
    NOTHING,
    SHOW_SPACES_OF_THEIR_NAMES, ///< And have no looks.
};

/// Throws with the reason when the config cannot be used. Version 1 is checked by the 1.x rules, version 2 by
/// OpenColorIO. `path` is that of the file, for the diagnostics; empty when there is none.
void sanity_check(const ConstConfigRcPtr& config, KnownViews known = KnownViews::NOTHING,
                  const std::string& path = {});
unsigned int get_major_version(const ConstConfigRcPtr& config);

/// Color spaces to publish: all of a version 1 config, the active ones of version 2.
int get_num_color_spaces(const ConstConfigRcPtr& config);
const char* get_color_space_name_by_index(const ConstConfigRcPtr& config, int index);
/// By name or role, ignoring case; null when unknown. A config without strict parsing returns the color space
/// of the default role for unknown names.
ConstColorSpaceRcPtr get_color_space(const ConstConfigRcPtr& config, const char* name);
/// Adds a copy of `space`, in place of the space of the same name (any case).
void add_color_space(const ConfigRcPtr& config, const ConstColorSpaceRcPtr& space);
void clear_color_spaces(const ConfigRcPtr& config);

int get_num_displays(const ConstConfigRcPtr& config);
const char* get_display(const ConstConfigRcPtr& config, int index);
const char* get_default_display(const ConstConfigRcPtr& config);
/// Views of a display, shared ones included.
int get_num_views(const ConstConfigRcPtr& config, const char* display);
const char* get_view(const ConstConfigRcPtr& config, const char* display, int index);
/// All of those views, in time proportional to their number where OpenColorIO allows it.
std::vector<std::string> list_views(const ConstConfigRcPtr& config, const char* display);
const char* get_default_view(const ConstConfigRcPtr& config, const char* display);
/// Color space that the view shows; empty when display or view is unknown or empty.
std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view);
/// The same, for many views: `own_names` is the result of `list_own_names`, which saves OpenColorIO a search
/// per view.
std::string get_display_color_space_name(const ConstConfigRcPtr& config, const char* display,
                                         const char* view, const std::unordered_set<std::string>& own_names);
/// Names of the color spaces, inactive ones included, without aliases and roles.
std::unordered_set<std::string> list_own_names(const ConstConfigRcPtr& config);
/// Adds or replaces a view.
void add_display(const ConfigRcPtr& config, const char* display, const char* view, const char* color_space,
                 const char* looks);
void clear_displays(const ConfigRcPtr& config);

/// Name of the color space of `role`; empty when the config does not define the role.
std::string get_role_color_space(const ConstConfigRcPtr& config, const char* role);

} // namespace ocio
