#pragma once

#include <string>

/// Renames the file at `path` to "`path`.damaged-N" with the first free number N from 1. Returns the new
/// path; empty on failure.
std::string set_aside(const std::string& path);
