#pragma once

#include <pybind11/pybind11.h>

#include "python/color_converter.h"
#include "workflow/image_job.h"

namespace python {

/// Adds the functions behind `read_image` and `write_image` of the package.
void add_images(pybind11::module_& module);

/// Adds `ImageReport`, and the method of a converter that converts an image file.
void add_image_conversion(pybind11::module_& module, ConverterType& converter);

} // namespace python
