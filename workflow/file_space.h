#pragma once

#include <string>

namespace workflow {

/// The color space that the pixels of a file are taken to be in.
struct FileSpace {
    std::string color_space; ///< A published label; empty when the config publishes none.
    std::string reason;      ///< "from the built-in associations, category Open EXR".
    /// The associated space is missing in the config, and the module's default stands in for it.
    bool is_assumed = false;
    std::string associated_space; ///< What the associations name.
};

/// The one rule for the color space of a file that the user did not name: the module's format association for
/// the extension; where the config lacks that space, its default color space, then scene-linear, then its
/// first color space. Needs an open session. The file is not opened.
FileSpace find_file_space(const std::string& path);

} // namespace workflow
