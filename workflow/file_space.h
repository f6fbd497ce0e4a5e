#pragma once

#include <string>

namespace workflow {

/// The color space of a file.
struct FileSpace {
    std::string color_space; ///< A published label; empty when the config publishes none.
    std::string reason;      ///< "from the built-in associations, category Open EXR".
    /// The associated color space is not in the config; `color_space` is a fallback.
    bool is_assumed = false;
    std::string associated_space; ///< Color space of the format association.
};

/// Determines the color space of a file: the module's format association for its extension; where the config
/// lacks that color space, the default color space, then scene-linear, then the first color space of the
/// config. Needs an open session. Does not open the file.
FileSpace find_file_space(const std::string& path);

} // namespace workflow
