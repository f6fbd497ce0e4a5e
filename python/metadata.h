#pragma once

#include <OpenImageIO/imageio.h>
#include <pybind11/pybind11.h>

namespace python {

/// The attributes of an image: str, int, float, bytes, tuples of numbers, fractions.Fraction for rational
/// numbers, and nested tuples for matrices. Attributes of other types are left out.
pybind11::dict make_metadata(const OIIO::ImageSpec& spec);

/// Adds attributes of such a dict. Throws TypeError for values of other types, with the name.
void add_metadata(const pybind11::dict& metadata, OIIO::ImageSpec& spec);

} // namespace python
