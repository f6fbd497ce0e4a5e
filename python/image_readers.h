#pragma once

#include <pybind11/pybind11.h>

namespace python {

/// Starts the process that image readers come from, if it does not run. An error is that of the first image.
void start_image_readers();

/// Adds the functions by which the package says where its program is, and that the process was forked.
void add_image_readers(pybind11::module_& module);

} // namespace python
