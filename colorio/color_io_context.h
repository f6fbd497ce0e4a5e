#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

/// Context variables that a user sets for one run, such as SHOT. For programs; hosts set the environment.
/// Main thread only, and not while another thread configures a converter. Failures are logged.
class COLORIO_API ColorIOContext {
public:
    /// A context variable and its value.
    struct Variable {
        CoreString name;  ///< Without "$": "SHOT".
        CoreString value; ///< Replaces the variable in the config's paths and names.
    };

    /// The values that these variables have in every config that is loaded from now on, before those of the
    /// environment and the defaults of the config.
    static void set_variables(const CoreVector<Variable>& variables);
    /// Whether anything in the active config depends on the variable. False without a manager.
    static bool is_used(const CoreString& name);
};
