#pragma once

#include <string>

class OfApp;

namespace workflow {

/// Where the config comes from.
struct ConfigSource {
    enum Kind { BUILTIN, FILE, ENVIRONMENT, PREFERENCES };

    Kind kind = BUILTIN;
    std::string path; ///< Empty for the built-in config.

    /// True when the session has to pass the path to the module, which reads $OCIO itself.
    bool is_file() const { return kind == FILE || kind == PREFERENCES; }
    /// "builtin", "file", "environment" or "preferences".
    const char* get_kind_name() const;
    /// For messages: "aces.ocio", or "the built-in config".
    std::string get_name() const;
};

/// True for the name of a config that OpenColorIO 2.2 and later contain: "ocio://default".
bool is_in_library(const std::string& path);

/// The config to load: `config_path`, unless it is empty; else $OCIO; else the config of `preferences`; else
/// the built-in config. Does not check that the file exists.
ConfigSource find_config_source(const std::string& config_path, const OfApp& preferences);

} // namespace workflow
