#pragma once

#include "workflow/session_options.h"
#include "workflow/setup_report.h"

namespace workflow {

/// The folders that programs write to: whether they exist, and whether this user can write there.
SetupSection examine_folders();

/// The preferences file of these options: its path, its permissions, and what is wrong with it.
SetupSection examine_preferences(const SessionOptions& options);

} // namespace workflow
