#pragma once

#include <istream>
#include <string>

namespace ocio {

/// OpenColorIO allocates memory for as many tags and curve entries as an ICC profile claims, up to 100 GB,
/// before it reads the first. Returns a description of what the file claims beyond its size; empty when it
/// does not, or is not an ICC profile. `file` is at its start.
std::string find_icc_overclaim(std::istream& file);

} // namespace ocio
