#pragma once

#include <string>

namespace tool {

/// Where the configuration is to come from.
struct ConfigSource {
    enum Kind { BUILTIN, FILE, ENVIRONMENT };

    Kind kind = BUILTIN;
    std::string path; ///< Empty for the built-in one.

    /// For messages: "aces.ocio", or "the built-in configuration".
    std::string get_name() const;
    /// For results: "/show/aces.ocio (--config)", "/show/aces.ocio ($OCIO)" or "the built-in configuration".
    std::string describe() const;
};

/// The file at `config_path`; when that is empty the one that $OCIO names; else the built-in configuration.
ConfigSource find_config_source(const std::string& config_path);

} // namespace tool
