#pragma once

#include <string>

class OfApp;

namespace workflow {

/// Where the config comes from.
struct ConfigSource {
    enum Kind { BUILTIN, FILE, ENVIRONMENT, PREFERENCES };

    Kind kind = BUILTIN;
    std::string path; ///< Empty for the built-in one.

    /// True when this program names the file to the module, which itself follows the environment.
    bool is_file() const { return kind == FILE || kind == PREFERENCES; }
    /// For messages: "aces.ocio", or "the built-in config".
    std::string get_name() const;
    /// For results: "/show/aces.ocio (--config)", "/show/aces.ocio ($OCIO)",
    /// "/show/aces.ocio (preferences)" or "the built-in config".
    std::string describe() const;
};

/// Whether `path` names a config that newer versions of OpenColorIO contain: "ocio://default". The module
/// takes those from the environment only.
bool is_in_library(const std::string& path);

/// The file at `config_path`; when that is empty the one that $OCIO names; then the one that `preferences`
/// name; else the built-in config.
ConfigSource find_config_source(const std::string& config_path, const OfApp& preferences);

} // namespace workflow
