#pragma once

#include <pybind11/pybind11.h>

#include "python/open_session.h"

namespace python {

/// Adds `FileSpace`, and the method of a session that finds it.
void add_file_space(pybind11::module_& module, SessionType& session);

} // namespace python
