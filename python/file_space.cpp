#include "python/file_space.h"

#include <fmt/format.h>

#include "python/diagnostics.h"
#include "python/image_readers.h"
#include "python/text.h"
#include "workflow/file_space.h"

namespace py = pybind11;

namespace python {

namespace {

using workflow::FileSpace;

py::list list_steps(const FileSpace& space) {
    py::list steps;
    for (const workflow::FileSpaceStep& step : space.steps)
        steps.append(py::make_tuple(make_text(step.name), make_text(step.answer)));
    return steps;
}

} // namespace

void add_file_space(py::module_& module, SessionType& session) {
    py::class_<FileSpace>(module, "FileSpace",
                          "The color space that the pixels of a file are taken to be in.")
        .def_property_readonly("color_space", text_getter<FileSpace>(&FileSpace::color_space),
                               "str: its label.")
        .def_property_readonly("reason", text_getter<FileSpace>(&FileSpace::reason),
                               "str: 'from the file rule exr of show.ocio'.")
        .def_readonly("is_assumed", &FileSpace::is_assumed, "bool: no tag, rule or association decides it.")
        .def_readonly("is_data", &FileSpace::is_data, "bool: it holds data, which is never converted.")
        .def_property_readonly(
            "steps", &list_steps,
            "list[tuple[str, str]]: what was asked, and its answer; the decisive one last.")
        .def_property_readonly(
            "warnings", [](const FileSpace& self) { return make_diagnostics(self.warnings); },
            "tuple[Diagnostic, ...]: about tags that name no color space, and so on.")
        .def("__repr__", [](const FileSpace& self) {
            return make_text(fmt::format("<FileSpace '{}', {}>", self.color_space, self.reason));
        });
    session.def(
        "find_file_space",
        [](OpenSession& self, const py::object& path) {
            workflow::Session& open = self.get();
            const std::string file = get_path(path, "path");
            start_image_readers();
            const py::gil_scoped_release unlocked;
            return workflow::find_file_space(open, file);
        },
        py::arg("path"),
        "Find the color space of an image by its tags, the file rules and the format associations.\n\n"
        "Return a FileSpace. The tags of a file that cannot be read are left out.");
}

} // namespace python
