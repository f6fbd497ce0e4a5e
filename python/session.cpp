#include "python/session.h"

#include <optional>

#include <fmt/format.h>
#include <pybind11/stl.h>

#include "diagnostics/failure.h"
#include "python/converter.h"
#include "python/diagnostics.h"
#include "python/file_space.h"
#include "python/names.h"
#include "python/open_session.h"
#include "python/reports.h"
#include "python/text.h"
#include "workflow/cdl_library.h"

namespace py = pybind11;

namespace python {

namespace {

/// Throws the diagnostic as a failure if there is one.
void require(const std::optional<diagnostics::Diagnostic>& refusal) {
    if (refusal)
        throw diagnostics::Failure(*refusal);
}

py::dict describe_context(const std::vector<std::string>& context) {
    py::dict variables;
    for (const std::string& text : context) {
        const std::size_t sign = text.find('=');
        variables[make_text(text.substr(0, sign))] = make_text(text.substr(sign + 1));
    }
    return variables;
}

void add_life(SessionType& type) {
    type.def(py::init([](const py::object& config, const py::object& context, const py::object& preferences) {
                 const workflow::SessionOptions options = make_options(config, context, preferences);
                 return OpenSession::open(options);
             }),
             py::arg("config") = py::none(), py::kw_only(), py::arg("context") = py::none(),
             py::arg("preferences") = py::none(),
             "Load a config.\n\n"
             "config: path of an OCIO config; 'builtin' for the built-in one; None for $OCIO, then the "
             "config\n"
             "    of the preferences, then the built-in one.\n"
             "context: dict of context variables, {'SHOT': 'sq010'}.\n"
             "preferences: path of a preferences file; False for none; None for the user's.\n\n"
             "Raises ConfigError when the config cannot be used, and Error while another session is open.")
        .def("close", &OpenSession::close,
             "End the session. Converters stay usable for arrays. Does nothing when it is closed.")
        .def_property_readonly("is_open", &OpenSession::is_open, "False after close().")
        .def("__enter__", [](std::shared_ptr<OpenSession> self) { return self->get(), self; })
        .def("__exit__", [](OpenSession& self, const py::args&) { self.close(); })
        .def("__repr__", [](OpenSession& self) {
            return self.is_open() ? make_text(fmt::format("<Session of {}>", self.get().get_config_name()))
                                  : py::str("<Session, closed>");
        });
}

void add_config(SessionType& type) {
    type.def_property_readonly(
            "config_name", [](OpenSession& self) { return make_text(self.get().get_config_name()); },
            "str: 'show.ocio', or 'the built-in config'.")
        .def_property_readonly(
            "config_path", [](OpenSession& self) { return make_text(self.get().get_source().path); },
            "str: path of the config; empty for the built-in one.")
        .def_property_readonly(
            "config_source", [](OpenSession& self) { return self.get().get_source().get_kind_name(); },
            "str: 'builtin', 'file', 'environment' or 'preferences'.")
        .def_property_readonly(
            "context", [](OpenSession& self) { return describe_context(self.get().get_context()); },
            "dict[str, str]: the context variables that the session sets.")
        .def_property_readonly(
            "notices", [](OpenSession& self) { return make_diagnostics(self.get().get_notices()); },
            "tuple[Diagnostic, ...]: warnings and notes of the start.")
        .def(
            "use_config",
            [](OpenSession& self, const py::object& config) {
                workflow::Session& session = self.get();
                const std::string path = get_config_path(config);
                const py::gil_scoped_release unlocked;
                require(session.use_config(path));
            },
            py::arg("config"),
            "Switch to the config at a path, or to 'builtin'. Converters keep the config they were made "
            "with.\n\n"
            "Raises Error, and changes nothing, when it cannot be used.")
        .def(
            "use_context",
            [](OpenSession& self, const py::object& variables) {
                workflow::Session& session = self.get();
                const std::vector<std::string> context = get_context(variables);
                diagnostics::Diagnostics warnings;
                {
                    const py::gil_scoped_release unlocked;
                    warnings = session.use_context(context);
                }
                return make_diagnostics(warnings);
            },
            py::arg("context"),
            "Load the config again with these context variables in place of those so far.\n\n"
            "Return a warning for each variable that it does not use. Raises Error, and changes nothing, "
            "when\n"
            "it cannot be loaded with them.")
        .def(
            "use_cdl_library",
            [](OpenSession& self, const py::object& path) {
                require(self.get().use_cdl_library(get_path(path, "path")));
                return make_diagnostics(self.get().get_cdl_library().get_warnings());
            },
            py::arg("path"),
            "Make the color corrections of an ASC CDL file available by name.\n\n"
            "Return a warning for each that is not. Raises Error, and changes nothing, when it cannot be "
            "used.");
}

} // namespace

void add_session(py::module_& module) {
    module.def("_close_last_session", &OpenSession::close_last);
    SessionType type(
        module, "Session",
        "Color management with a config.\n\n"
        "One session is open at a time, and is used in the thread that made it; converters can be used in\n"
        "every thread, also after the session. Use it in a with statement, which closes it.");
    add_life(type);
    add_config(type);
    add_name_lists(type);
    add_converter_makers(type);
    add_config_check(type);
    add_file_space(module, type);
}

} // namespace python
