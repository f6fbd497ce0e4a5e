#pragma once

#include <pybind11/pybind11.h>

#include "python/color_converter.h"
#include "python/open_session.h"

namespace python {

/// Adds `Stage`, `Step` and `GpuPackage`, and the methods of a converter that make them.
void add_explanations(pybind11::module_& module, ConverterType& converter);

/// Adds `CheckReport` and `CheckFailure`.
void add_reports(pybind11::module_& module);

/// Adds the method of a session that checks its config.
void add_config_check(SessionType& session);

} // namespace python
