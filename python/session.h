#pragma once

#include <pybind11/pybind11.h>

namespace python {

/// Adds `Session`.
void add_session(pybind11::module_& module);

} // namespace python
