// The compiled part of the package qb_colorio.
#include <pybind11/pybind11.h>

#include "python/converter.h"
#include "python/diagnostics.h"
#include "python/image_readers.h"
#include "python/images.h"
#include "python/names.h"
#include "python/reports.h"
#include "python/session.h"

namespace py = pybind11;

PYBIND11_MODULE(_core, module) {
    // Classes belong to the package for its users.
    const py::object name = module.attr("__name__");
    module.attr("__name__") = "qb_colorio";
    python::add_diagnostics(module);
    python::add_names(module);
    python::add_reports(module);
    python::add_converter(module);
    python::add_session(module);
    python::add_images(module);
    python::add_image_readers(module);
    module.attr("__name__") = name;
}
