#pragma once

#include "workflow/session_options.h"
#include "workflow/setup_report.h"

namespace workflow {

/// The processor, the folders, the environment, the preferences file and the config that programs use with
/// these options. What is broken is a problem of an item; throws nothing else than std::bad_alloc.
SetupReport examine_setup(const SessionOptions& options);

/// The libraries that read images and OpenGL. A crash of a library ends the process: call it in a separate
/// one.
SetupReport examine_images();

} // namespace workflow
