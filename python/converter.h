#pragma once

#include <pybind11/pybind11.h>

#include "python/open_session.h"

namespace python {

/// Adds `Converter`.
void add_converter(pybind11::module_& module);

/// Adds the methods of a session that make converters.
void add_converter_makers(SessionType& session);

} // namespace python
