#pragma once

#include <pybind11/pybind11.h>

#include "diagnostics/diagnostic.h"

namespace python {

/// Adds `Diagnostic`, and makes diagnostics::Failure the exceptions Error and ConfigError of the package.
void add_diagnostics(pybind11::module_& module);

/// A tuple of Diagnostic.
pybind11::tuple make_diagnostics(const diagnostics::Diagnostics& diagnostics);

} // namespace python
