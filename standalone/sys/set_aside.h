#pragma once

#include <string>

#include "host/host_export.h"

/// Renames the file at `path` to "`path`.damaged-N" with the first free number N from 1. Returns the new
/// path; empty on failure.
HOST_API std::string set_aside(const std::string& path);
