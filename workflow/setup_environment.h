#pragma once

#include "workflow/setup_report.h"

namespace workflow {

/// The environment variables that change what programs do, and what is wrong with their values.
SetupSection examine_environment();

} // namespace workflow
