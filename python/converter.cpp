#include "python/converter.h"

#include <optional>
#include <string>

#include <fmt/format.h>

#include "python/arrays.h"
#include "python/color_converter.h"
#include "python/diagnostics.h"
#include "python/images.h"
#include "python/reports.h"
#include "python/sequences.h"
#include "python/text.h"
#include "workflow/context_conversion.h"
#include "workflow/pixel_array.h"

namespace py = pybind11;

namespace python {

namespace {

using workflow::ColorStep;
using workflow::PixelArray;

/// With fewer pixels, letting other threads of Python run takes longer than converting.
constexpr std::size_t FEW_PIXELS = 512;

std::string get_name(const py::object& object, const char* argument) {
    if (object.is_none())
        return {};
    if (!py::isinstance<py::str>(object))
        throw py::type_error(
            fmt::format("{}: expected a str, got {}", argument, Py_TYPE(object.ptr())->tp_name));
    return object.cast<std::string>();
}

void add_steps(ColorStep::Kind kind, const py::object& names, const char* argument,
               workflow::ConversionRequest& request) {
    for (std::string& name : get_paths(names, argument))
        request.steps.push_back({kind, std::move(name)});
}

/// The arguments of Session.converter and Session.convert.
struct Arguments {
    py::object source, destination, view, display, inverse_view, cdl, looks, named_transform, lut, context;
    bool takes_exposure = false;

    workflow::ConversionRequest make_request() const {
        workflow::ConversionRequest request;
        request.from = get_name(source, "source");
        request.to = get_name(destination, "destination");
        request.view = get_name(view, "view");
        request.display = get_name(display, "display");
        request.inverse_view = get_name(inverse_view, "inverse_view");
        request.takes_exposure = takes_exposure;
        check(request);
        add_steps(ColorStep::CDL, cdl, "cdl", request);
        add_steps(ColorStep::LOOKS, looks, "looks", request);
        add_steps(ColorStep::NAMED_TRANSFORM, named_transform, "named_transform", request);
        add_steps(ColorStep::LUT, lut, "lut", request);
        return request;
    }

private:
    static void check(const workflow::ConversionRequest& request) {
        if (request.from.empty() == request.inverse_view.empty())
            throw py::type_error("give either source or inverse_view");
        if (!request.to.empty() && !request.view.empty())
            throw py::type_error("give either destination or view");
        if (!request.display.empty() && request.view.empty())
            throw py::type_error("a display needs a view");
    }
};

std::shared_ptr<Converter> make_converter(const std::shared_ptr<OpenSession>& open,
                                          const Arguments& arguments) {
    workflow::Session& session = open->get();
    const workflow::ConversionRequest request = arguments.make_request();
    const std::vector<std::string> context = get_context(arguments.context);
    const py::gil_scoped_release unlocked;
    return std::make_shared<Converter>(open, request, workflow::make_conversion(session, request, context));
}

void convert(const Converter& converter, const PixelArray& source, const PixelArray& target, float exposure) {
    if (exposure != 0 && !converter.get_conversion().takes_exposure())
        throw py::value_error("exposure: the converter was made without exposure=True");
    std::optional<py::gil_scoped_release> unlocked;
    if (count_pixels(source) >= FEW_PIXELS)
        unlocked.emplace();
    convert_pixels(converter.get_conversion(), source, target, exposure);
}

void apply(const Converter& self, const py::object& object, float exposure, int channel_axis) {
    const py::array array = require_array(object, "array");
    const PixelArray pixels = get_writable_pixels(array, channel_axis, "array");
    convert(self, pixels, pixels, exposure);
}

py::array make_like(const py::array& array) {
    return py::array(array.dtype(), std::vector<py::ssize_t>(array.shape(), array.shape() + array.ndim()));
}

py::array call(const Converter& self, const py::object& object, const py::object& out, float exposure,
               int channel_axis) {
    const py::array source = get_array(object);
    const PixelArray from = get_pixels(source, channel_axis, "array");
    const py::array target = out.is_none() ? make_like(source) : require_array(out, "out");
    const PixelArray to = get_writable_pixels(target, channel_axis, "out");
    if (from.extents != to.extents || from.channels != to.channels || source.ndim() != target.ndim())
        throw py::value_error("out: its shape differs from that of the array");
    if (!out.is_none())
        check_overlap(source, target);
    convert(self, from, to, exposure);
    return target;
}

void add_application(ConverterType& type) {
    type.def(
            "apply", &apply, py::arg("array"), py::arg("exposure") = 0.0f, py::kw_only(),
            py::arg("channel_axis") = -1,
            "Convert the pixels of an array in place.\n\n"
            "array: numpy.ndarray of float32, float16, uint8 or uint16 with 1 to 4 dimensions, one of which\n"
            "    holds red, green, blue and maybe alpha: (3,), (height, width, 4), (frames, height, width, "
            "3).\n"
            "    Integers stand for 0 to 1; results are clamped and rounded to the nearest. Any strides.\n"
            "    Interleaved float32 without gaps between channels and pixels is converted without a copy.\n"
            "exposure: in stops, applied in scene-linear; needs a converter made with exposure=True.\n"
            "channel_axis: the dimension of the channels, -1 for interleaved, 0 for planes.\n\n"
            "Other threads run meanwhile. Raises TypeError for other types, ValueError for other shapes and\n"
            "for read-only arrays, Error when the conversion fails; the pixels are then undefined.")
        .def("__call__", &call, py::arg("array"), py::arg("out") = py::none(), py::arg("exposure") = 0.0f,
             py::kw_only(), py::arg("channel_axis") = -1,
             "Return the converted pixels of an array as a new array of the same type and shape.\n\n"
             "array: as for apply(); also nested sequences of numbers, which become float32. It is not "
             "changed.\n"
             "out: array of the same shape for the result, which may have another type, and may be the same\n"
             "    array. It is returned.\n"
             "exposure, channel_axis: as for apply().\n\n"
             "Raises what apply() does, and ValueError when out overlaps the array otherwise.");
}

void add_facts(ConverterType& type) {
    type.def_property_readonly(
            "source", [](const Converter& self) { return make_text(self.get_conversion().get_source()); },
            "str: label of the source, a color space or a view.")
        .def_property_readonly(
            "destination",
            [](const Converter& self) { return make_text(self.get_conversion().get_destination()); },
            "str: label of the destination; name of the last named transform or LUT, if there is one.")
        .def_property_readonly(
            "destination_space",
            [](const Converter& self) { return make_text(self.get_conversion().get_destination_space()); },
            "str: label of the color space of the result; may be empty.")
        .def_property_readonly(
            "working_space",
            [](const Converter& self) { return make_text(self.get_conversion().get_working_space()); },
            "str: label of the color space in which CDLs and the exposure are applied; empty without them.")
        .def_property_readonly(
            "is_identity", [](const Converter& self) { return self.get_conversion().is_identity(); },
            "bool: pixels stay as they are, because source and destination are the same.")
        .def_property_readonly(
            "leaves_data", [](const Converter& self) { return self.get_conversion().leaves_data(); },
            "bool: pixels stay as they are, because the source holds data.")
        .def_property_readonly(
            "takes_exposure", [](const Converter& self) { return self.get_conversion().takes_exposure(); },
            "bool: it was made with exposure=True.")
        .def_property_readonly(
            "notes",
            [](const Converter& self) { return make_diagnostics(self.get_conversion().get_notes()); },
            "tuple[Diagnostic, ...]: names that were replaced, elements that are ignored, and so on.")
        .def("__repr__", [](const Converter& self) {
            return make_text(fmt::format("<Converter from '{}' to '{}'>", self.get_conversion().get_source(),
                                         self.get_conversion().get_destination()));
        });
}

} // namespace

void add_converter(py::module_& module) {
    ConverterType type(module, "Converter",
                       "A conversion, made by Session.converter(). Several threads may use it at once.");
    add_application(type);
    add_facts(type);
    add_explanations(module, type);
    add_image_conversion(module, type);
    add_sequence_conversion(module, type);
}

void add_converter_makers(SessionType& session) {
    session.def(
        "converter",
        [](const std::shared_ptr<OpenSession>& self, const py::object& source, const py::object& destination,
           const py::object& view, const py::object& display, const py::object& inverse_view,
           const py::object& cdl, const py::object& looks, const py::object& named_transform,
           const py::object& lut, bool exposure, const py::object& context) {
            return make_converter(self, {source, destination, view, display, inverse_view, cdl, looks,
                                         named_transform, lut, context, exposure});
        },
        py::arg("source") = py::none(), py::arg("destination") = py::none(), py::kw_only(),
        py::arg("view") = py::none(), py::arg("display") = py::none(), py::arg("inverse_view") = py::none(),
        py::arg("cdl") = py::none(), py::arg("looks") = py::none(), py::arg("named_transform") = py::none(),
        py::arg("lut") = py::none(), py::arg("exposure") = false, py::arg("context") = py::none(),
        "Make a converter; it keeps its colors when the session changes or ends.\n\n"
        "source: label, name, role or alias of a color space.\n"
        "destination: likewise; without it and view the source, or scene-linear after a CDL or a look.\n"
        "view: label of a view, 'sRGB.Film', or with display its name, in place of a destination.\n"
        "inverse_view: label of the view that the source is the result of, in place of a source.\n"
        "cdl: file, FILE:ID or name of a color correction, or several; applied in scene-linear.\n"
        "looks: 'film, -warm', or several; applied after the CDLs.\n"
        "named_transform, lut: applied to the result, or several.\n"
        "exposure: whether calls may give one.\n"
        "context: dict of context variables for this converter alone; the config is then loaded again.\n\n"
        "Raises Error for unknown names, with the nearest ones as the hint, and for files that cannot be "
        "read.");
    session.def(
        "convert",
        [](const std::shared_ptr<OpenSession>& self, const py::object& array, const py::object& source,
           const py::object& destination, const py::object& view, const py::object& display,
           const py::object& inverse_view, const py::object& cdl, const py::object& looks,
           const py::object& named_transform, const py::object& lut, const py::object& exposure,
           const py::object& context, const py::object& out, int channel_axis) {
            const auto converter =
                make_converter(self, {source, destination, view, display, inverse_view, cdl, looks,
                                      named_transform, lut, context, !exposure.is_none()});
            return call(*converter, array, out, exposure.is_none() ? 0.0f : exposure.cast<float>(),
                        channel_axis);
        },
        py::arg("array"), py::arg("source") = py::none(), py::arg("destination") = py::none(), py::kw_only(),
        py::arg("view") = py::none(), py::arg("display") = py::none(), py::arg("inverse_view") = py::none(),
        py::arg("cdl") = py::none(), py::arg("looks") = py::none(), py::arg("named_transform") = py::none(),
        py::arg("lut") = py::none(), py::arg("exposure") = py::none(), py::arg("context") = py::none(),
        py::arg("out") = py::none(), py::arg("channel_axis") = -1,
        "Convert an array once: converter(...)(array, out, exposure).\n\n"
        "With out=array the pixels are converted in place. The arguments are those of converter() and of\n"
        "Converter. To convert several arrays make a converter, which takes longer than to use it.");
}

} // namespace python
