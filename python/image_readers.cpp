#include "python/image_readers.h"

#include <string>

#include "image/reader_server.h"
#include "python/text.h"

namespace py = pybind11;

namespace python {

namespace {

std::string& get_program() {
    static std::string program;
    return program;
}

} // namespace

void start_image_readers() {
    image::start_reader_server(get_program());
}

void add_image_readers(py::module_& module) {
    module.def("_set_reader_program", [](const py::object& path) { get_program() = get_path(path, "path"); });
    module.def("_abandon_image_readers", &image::abandon_reader_server);
}

} // namespace python
