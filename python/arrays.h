#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include "workflow/pixel_array.h"

namespace python {

/// The pixels of a NumPy array of 1 to 4 axes, one of which holds 3 or 4 channels. `name` is that of the
/// argument. Throws TypeError for other types than uint8, uint16, float16 and float32, ValueError for other
/// shapes.
workflow::PixelArray get_pixels(const pybind11::array& array, int channel_axis, const char* name);

/// The same for pixels that are written. Throws ValueError also when the array is read-only, or when its
/// elements overlap each other.
workflow::PixelArray get_writable_pixels(const pybind11::array& array, int channel_axis, const char* name);

/// Throws ValueError when the arrays share memory but are not the same pixels.
void check_overlap(const pybind11::array& source, const pybind11::array& target);

/// The object itself if it is an array; else the array of float32 that NumPy makes of it.
pybind11::array get_array(const pybind11::object& object);

/// Throws TypeError unless it is an array.
pybind11::array require_array(const pybind11::object& object, const char* name);

/// The number of pixels.
std::size_t count_pixels(const workflow::PixelArray& pixels);

} // namespace python
