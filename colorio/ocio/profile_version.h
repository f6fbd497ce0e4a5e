#pragma once

#include <string>

namespace ocio {

/// "PATH is an OCIO 2.4 configuration and needs a newer OpenColorIO than 2.1.2" when the file declares a
/// version beyond the library's own, and likewise for an archive that the library cannot open; empty when it
/// does not, or cannot be read.
std::string describe_newer_profile(const std::string& path);

} // namespace ocio
