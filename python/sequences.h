#pragma once

#include <pybind11/pybind11.h>

#include "python/color_converter.h"

namespace python {

/// Adds `Frame` and `SequenceReport`, and the method of a converter that converts a sequence.
void add_sequence_conversion(pybind11::module_& module, ConverterType& converter);

} // namespace python
