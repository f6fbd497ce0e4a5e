#pragma once

#include <string>

namespace ocio {

/// Name of the outermost element of an XML file in an encoding that extends ASCII; empty when there is none
/// within the first 64 KB.
std::string xml_root_name(const std::string& path);

} // namespace ocio
