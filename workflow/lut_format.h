#pragma once

#include <string>
#include <vector>

namespace workflow {

/// A format that LUTs can be written in.
struct LutFormat {
    const char* extension;
    const char* baker;             ///< OpenColorIO's name; null where it has no such writer.
    const char* baker_with_shaper; ///< Null where the format has no shaper.
    std::string (*write)(const std::vector<float>& lut,
                         unsigned int edge); ///< Without OpenColorIO; may be null.
    bool is_limited = false;                 ///< To results from 0 to 1.
};

/// The extensions of all formats, without the dot.
std::vector<std::string> get_lut_extensions();

/// The format of the extension of `path`. Throws diagnostics::Failure for other extensions.
const LutFormat& find_lut_format(const std::string& path);

} // namespace workflow
