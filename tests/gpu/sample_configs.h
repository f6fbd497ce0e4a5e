#pragma once

#include <string>

#include "tests/support/temp_dir.h"

/// Writes a version 1 configuration with LUT files, a look, matrices, logs and both allocations below the
/// folder; returns its path.
std::string write_version_1_config(const TempDir& folder);

/// Writes a version 2 configuration with display color spaces, shared views, view transforms, curves,
/// built-in transforms and grading; returns its path.
std::string write_version_2_config(const TempDir& folder);
