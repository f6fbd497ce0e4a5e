#pragma once

#include <string>

#include <pybind11/pybind11.h>

#include "image/part_plan.h"
#include "workflow/image_conversion.h"

namespace python {

/// How files are written, as arguments of Python.
struct OutputArguments {
    std::string depth;
    bool dithers = false;
    std::string compression;
    pybind11::object quality; ///< None or an int.

    /// Throws diagnostics::Failure for an unknown depth, TypeError for another quality.
    image::OutputOptions make_output_options() const;
};

/// Likewise of conversions of images.
struct ImageArguments {
    OutputArguments output;
    pybind11::object divides_by_alpha; ///< None, True or False.
    pybind11::object layers;           ///< None, a str or several; as are the next two.
    pybind11::object parts;
    pybind11::object skipped;
    int threads = 0;

    workflow::ImageOptions make_image_options() const;
};

/// For docstrings.
constexpr char OUTPUT_ARGUMENTS[] =
    "depth: 'uint8', 'uint10', 'uint12', 'uint16', 'half' or 'float'; without one that of the input, or the\n"
    "    nearest that the format supports.\n"
    "dither: add noise before rounding to 8 or 10 bits.\n"
    "compression, quality: 'piz' or 'jpeg:' and so on, by the format of the output.\n";
constexpr char LAYER_ARGUMENTS[] =
    "divide_by_alpha: whether colors are divided by alpha before the conversion and multiplied after it; "
    "None\n"
    "    for what the file says.\n"
    "layers, parts, skip: names of layers and parts to convert, and of those to leave; None for all color.\n"
    "threads: for one image; 0 for all cores.\n";

} // namespace python
