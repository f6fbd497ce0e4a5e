#pragma once

#include <string>

#include "colorio/ocio/types.h"

namespace ocio {

/// The file rule of a config that a path matches.
struct FileRule {
    std::string name;        ///< Empty when the config has no file rules.
    std::string color_space; ///< As the rule spells it: a name, a role or an alias.
    bool is_default = false;
};

/// The first rule that matches `path`. Configs of version 1 have no file rules.
FileRule find_file_rule(const ConstConfigRcPtr& config, const std::string& path);

} // namespace ocio
