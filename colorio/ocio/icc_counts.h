#pragma once

#include <istream>
#include <string>

namespace ocio {

/// The library makes room for as many tags and curve entries as an ICC profile claims, 100 GB for four bytes,
/// before it reads the first. Returns what the file claims beyond its own size; empty when it claims no
/// more or is not an ICC profile. `file` is at its start.
std::string find_icc_overclaim(std::istream& file);

} // namespace ocio
