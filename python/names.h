#pragma once

#include <pybind11/pybind11.h>

#include "python/open_session.h"

namespace python {

/// Adds `ColorSpace`, `View`, `Role`, `NamedTransform` and `CDL`.
void add_names(pybind11::module_& module);

/// Adds the properties of a session that list them.
void add_name_lists(SessionType& session);

} // namespace python
