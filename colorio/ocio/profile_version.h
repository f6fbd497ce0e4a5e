#pragma once

#include <string>

namespace ocio {

/// Whether `path` names a config that OpenColorIO contains, such as "ocio://default"; since version 2.2.
bool is_library_config(const std::string& path);

/// "PATH is an OCIO 2.4 config and needs a newer OpenColorIO than 2.1.2" when the file declares a version
/// beyond OpenColorIO's own, and likewise for an archive that OpenColorIO cannot open; empty when it does
/// not, or cannot be read.
std::string describe_newer_profile(const std::string& path);

/// The version that a CTF file declares, when it is beyond OpenColorIO's own, which is the newest that it
/// reads; empty when it is not, or cannot be read.
std::string find_newer_transform_version(const std::string& path);

} // namespace ocio
