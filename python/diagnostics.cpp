#include "python/diagnostics.h"

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "python/text.h"
#include "workflow/session.h"

namespace py = pybind11;

namespace python {

namespace {

using diagnostics::Diagnostic;

constexpr char PACKAGE[] = "qb_colorio";

std::string describe(const Diagnostic& diagnostic) {
    return fmt::format("{}: {}", get_name(diagnostic.severity), format_with_hint(diagnostic));
}

py::tuple save(const Diagnostic& diagnostic) {
    return py::make_tuple(static_cast<int>(diagnostic.code), static_cast<int>(diagnostic.severity),
                          py::bytes(diagnostic.subject), py::bytes(diagnostic.file), diagnostic.line,
                          diagnostic.column, py::bytes(diagnostic.message), py::bytes(diagnostic.hint));
}

Diagnostic restore(const py::tuple& saved) {
    if (saved.size() != 8)
        throw py::value_error("this is not a Diagnostic");
    return {static_cast<diagnostics::Code>(saved[0].cast<int>()),
            static_cast<diagnostics::Severity>(saved[1].cast<int>()),
            saved[2].cast<std::string>(),
            saved[3].cast<std::string>(),
            saved[4].cast<unsigned int>(),
            saved[5].cast<unsigned int>(),
            saved[6].cast<std::string>(),
            saved[7].cast<std::string>()};
}

/// Raises the exception of the package with that name.
void raise(const char* name, const diagnostics::Failure& failure) {
    const py::object type = py::module_::import(PACKAGE).attr(name);
    const py::object exception = type(make_diagnostics(failure.get_diagnostics()));
    PyErr_SetObject(type.ptr(), exception.ptr());
}

void translate(std::exception_ptr thrown) {
    try {
        if (thrown)
            std::rethrow_exception(thrown);
    } catch (const workflow::ConfigFailure& failure) {
        raise("ConfigError", failure);
    } catch (const diagnostics::Failure& failure) {
        raise("Error", failure);
    }
}

} // namespace

void add_diagnostics(py::module_& module) {
    py::class_<Diagnostic>(module, "Diagnostic", "One error, warning or note. Its fields do not change.")
        .def_property_readonly(
            "code", [](const Diagnostic& self) { return std::string(get_name(self.code)); },
            "The cause, as docs/diagnostics.md lists them: 'lut-missing'.")
        .def_property_readonly(
            "severity", [](const Diagnostic& self) { return get_name(self.severity); },
            "'note', 'warning' or 'error'.")
        .def_property_readonly("subject", text_getter<Diagnostic>(&Diagnostic::subject),
                               "Name of the color space, view, CDL or option that it is about; may be empty.")
        .def_property_readonly("file", text_getter<Diagnostic>(&Diagnostic::file),
                               "Path of the file with the error; may be empty.")
        .def_readonly("line", &Diagnostic::line, "Line in that file, from 1; 0 if unknown.")
        .def_readonly("column", &Diagnostic::column, "Column in that line, from 1; 0 if unknown.")
        .def_property_readonly("message", text_getter<Diagnostic>(&Diagnostic::message),
                               "What is wrong and why, in one line.")
        .def_property_readonly("hint", text_getter<Diagnostic>(&Diagnostic::hint),
                               "How to fix it; may be empty.")
        .def("__str__", [](const Diagnostic& self) { return make_text(describe(self)); })
        .def("__repr__",
             [](const Diagnostic& self) {
                 return make_text(fmt::format("<Diagnostic {}: {}>", get_name(self.code), describe(self)));
             })
        .def(
            "__eq__", [](const Diagnostic& self, const Diagnostic& other) { return self == other; },
            py::is_operator())
        .def("__hash__", [](const Diagnostic& self) { return py::hash(make_text(self.file + self.message)); })
        .def(py::pickle(&save, &restore));
    py::register_exception_translator(&translate);
}

py::tuple make_diagnostics(const diagnostics::Diagnostics& diagnostics) {
    py::tuple made(diagnostics.size());
    for (std::size_t i = 0; i < diagnostics.size(); ++i)
        made[i] = diagnostics[i];
    return made;
}

} // namespace python
