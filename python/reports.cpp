#include "python/reports.h"

#include <array>
#include <string>

#include <fmt/format.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include "python/diagnostics.h"
#include "python/text.h"
#include "workflow/config_check.h"
#include "workflow/explanation.h"
#include "workflow/gpu_package.h"

namespace py = pybind11;

namespace python {

namespace {

using workflow::CheckFailure;
using workflow::CheckReport;
using workflow::ExplainedStage;
using workflow::GpuConversion;
using Step = ColorIOEvaluation::Step;

py::str make_text(const CoreBasicString& text) {
    return python::make_text(std::string(text.view()));
}

py::tuple make_pixel(const GMathVec4<float>& pixel) {
    const float* const values = pixel.get_data();
    return py::make_tuple(values[0], values[1], values[2], values[3]);
}

py::list explain(const Converter& self, const py::object& object) {
    const auto pixel = object.cast<std::vector<float>>();
    if (pixel.size() != 3 && pixel.size() != 4)
        throw py::value_error("pixel: expected 3 or 4 numbers");
    const std::array<float, 4> rgba = {pixel[0], pixel[1], pixel[2], pixel.size() == 4 ? pixel[3] : 1.0f};
    py::list stages;
    for (const ExplainedStage& stage : workflow::explain_conversion(self.get_conversion(), rgba))
        stages.append(stage);
    return stages;
}

gl::GlProfile get_profile(const std::string& name) {
    if (name == "core")
        return gl::GlProfile::CORE;
    if (name == "legacy")
        return gl::GlProfile::LEGACY;
    throw py::value_error(fmt::format("profile: '{}' is not 'core' or 'legacy'", name));
}

py::list list_luts(const GpuConversion& package) {
    py::list luts;
    for (const workflow::GpuLut& lut : package.luts) {
        const auto edge = static_cast<py::ssize_t>(lut.edge);
        const std::array<py::ssize_t, 4> shape = {lut.values.empty() ? 0 : edge, edge, edge, 3};
        luts.append(py::array_t<float>(shape, lut.values.data()));
    }
    return luts;
}

void add_stage(py::module_& module) {
    py::class_<Step>(module, "Step", "One operation of a stage, as it is computed.")
        .def_property_readonly(
            "operation", [](const Step& self) { return make_text(self.operation); }, "str: in words.")
        .def_property_readonly(
            "pixel", [](const Step& self) { return make_pixel(self.pixel); },
            "tuple[float, float, float, float]: red, green, blue, alpha after it.")
        .def("__repr__", [](const Step& self) {
            return python::make_text(fmt::format("<Step {}>", self.operation.get_data()));
        });
    py::class_<ExplainedStage>(module, "Stage", "One stage of a conversion.")
        .def_property_readonly("title", text_getter<ExplainedStage>(&ExplainedStage::title),
                               "str: what it converts: 'lin to film'.")
        .def_property_readonly(
            "operations",
            [](const ExplainedStage& self) {
                py::list operations;
                for (const CoreString& operation : self.how.operations)
                    operations.append(make_text(operation));
                return operations;
            },
            "list[str]: the operations of the config.")
        .def_property_readonly(
            "steps",
            [](const ExplainedStage& self) {
                py::list steps;
                for (const Step& step : self.how.steps)
                    steps.append(step);
                return steps;
            },
            "list[Step]: the operations that are computed, after simplification.")
        .def_property_readonly(
            "path", [](const ExplainedStage& self) { return workflow::get_path_name(self.how.path); },
            "str: what computes them: 'simd', 'opencolorio' or, without operations, 'none'.")
        .def_property_readonly(
            "reason", [](const ExplainedStage& self) { return make_text(self.how.reason); },
            "str: why OpenColorIO computes them; empty otherwise.")
        .def_property_readonly(
            "description",
            [](const ExplainedStage& self) { return python::make_text(workflow::describe_path(self.how)); },
            "str: path and reason in words.")
        .def("__repr__", [](const ExplainedStage& self) {
            return python::make_text(fmt::format("<Stage {}>", self.title));
        });
}

void add_gpu_package(py::module_& module) {
    py::class_<GpuConversion>(module, "GpuPackage", "A conversion as a GLSL function with 3D LUTs.")
        .def_property_readonly(
            "text", text_getter<GpuConversion>(&GpuConversion::text),
            "str: GLSL that defines vec4 OCIODisplay(in vec4 inPixel, const sampler3D lut3d),\n"
            "with lut3d_0, lut3d_1 and so on for several LUTs, and with a last parameter\n"
            "in float gain, 2 to the power of the exposure, if it takes a gain.")
        .def_property_readonly(
            "luts", &list_luts,
            "list[numpy.ndarray]: float32 of the shape (blue, green, red, 3), in the order\n"
            "of the parameters; ready to upload.")
        .def_readonly("takes_gain", &GpuConversion::takes_gain, "bool: there is a parameter for the gain.")
        .def(
            "write",
            [](const GpuConversion& self, const py::object& folder) {
                return make_texts(workflow::write_gpu_conversion(self, get_path(folder, "folder")));
            },
            py::arg("folder"),
            "Write the text and the LUTs (.spi3d and .cube) to a folder, which is created if missing.\n\n"
            "Return the paths. Raises Error when they cannot be written.");
}

void add_failure(py::module_& module) {
    py::class_<CheckFailure>(module, "CheckFailure", "Something in a config that does not work.")
        .def_property_readonly(
            "subject", [](const CheckFailure& self) { return workflow::get_name(self.subject); },
            "str: 'color space', 'view', 'look' and so on.")
        .def_property_readonly("name", text_getter<CheckFailure>(&CheckFailure::name), "str: its name.")
        .def_property_readonly("directions", texts_getter<CheckFailure>(&CheckFailure::directions),
                               "tuple[str, ...]: 'to linear', 'from linear'; empty where there is only one.")
        .def_property_readonly(
            "reason", [](const CheckFailure& self) { return self.reason; }, "Diagnostic: why.")
        .def("__str__", [](const CheckFailure& self) { return python::make_text(workflow::describe(self)); })
        .def("__repr__", [](const CheckFailure& self) {
            return python::make_text(fmt::format("<CheckFailure {}>", workflow::describe(self)));
        });
}

} // namespace

void add_explanations(py::module_& module, ConverterType& converter) {
    add_stage(module);
    add_gpu_package(module);
    converter
        .def("explain", &explain, py::arg("pixel") = py::make_tuple(0.18, 0.18, 0.18),
             "Return the stages of the conversion, with the value of a pixel after each operation.\n\n"
             "pixel: 3 or 4 numbers. Raises Error when OpenColorIO cannot explain a stage.")
        .def(
            "gpu_package",
            [](const Converter& self, const std::string& profile) {
                return workflow::make_gpu_conversion(self.get_conversion(), get_profile(profile));
            },
            py::arg("profile") = "core",
            "Return the conversion for OpenGL.\n\n"
            "profile: 'core' for GLSL 1.30 and later, 'legacy' for GLSL 1.20. Raises Error when it has no\n"
            "such form.");
}

void add_reports(py::module_& module) {
    add_failure(module);
    py::class_<CheckReport>(module, "CheckReport", "The result of trying every conversion of a config.")
        .def_property_readonly(
            "ok", [](const CheckReport& self) { return self.failures.empty(); },
            "bool: everything that users can choose works.")
        .def_property_readonly("scene_linear", text_getter<CheckReport>(&CheckReport::scene_linear),
                               "str: label of the color space that all others were tried with.")
        .def_property_readonly(
            "counts",
            [](const CheckReport& self) {
                py::dict counts;
                for (const workflow::CheckCount& count : workflow::get_check_counts())
                    counts[count.name] = self.*count.count;
                return counts;
            },
            "dict[str, int]: how many of each were tried: 'spaces_tried', 'views_tried'.")
        .def_property_readonly(
            "failures", [](const CheckReport& self) { return self.failures; },
            "list[CheckFailure]: what failed.")
        .def_property_readonly(
            "notes", [](const CheckReport& self) { return self.notes; },
            "list[CheckFailure]: failures of what users cannot choose by itself.");
}

void add_config_check(SessionType& session) {
    session.def(
        "check",
        [](OpenSession& self) {
            self.get();
            const py::gil_scoped_release unlocked;
            return workflow::check_config();
        },
        "Try every conversion of the config: color spaces, views, looks and named transforms.\n\n"
        "Return a CheckReport; what fails is in it, and not raised. Other threads run meanwhile.");
}

} // namespace python
