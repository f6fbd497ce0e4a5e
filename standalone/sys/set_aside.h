#pragma once

#include <string>

/// Renames the file at `path` to "`path`.damaged-N", N being the first number from 1 that is free, and
/// answers the new path; empty when that failed.
std::string set_aside(const std::string& path);
