#include "python/images.h"

#include <array>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include "python/arrays.h"
#include "python/diagnostics.h"
#include "python/image_options.h"
#include "python/image_readers.h"
#include "python/metadata.h"
#include "python/text.h"
#include "workflow/image_conversion.h"
#include "workflow/memory_image.h"
#include "workflow/output_colors.h"

namespace py = pybind11;

namespace python {

namespace {

using OIIO::TypeDesc;
using workflow::ImageReport;
using workflow::MemoryImage;

/// Pairs of OpenImageIO's and NumPy's types that are the same.
const std::pair<TypeDesc::BASETYPE, const char*> TYPES[] = {
    {TypeDesc::UINT8, "uint8"},  {TypeDesc::UINT16, "uint16"}, {TypeDesc::UINT32, "uint32"},
    {TypeDesc::HALF, "float16"}, {TypeDesc::FLOAT, "float32"}, {TypeDesc::DOUBLE, "float64"}};

py::dtype get_type(const MemoryImage& image) {
    for (const auto& [type, name] : TYPES)
        if (image.spec.format.basetype == type)
            return py::dtype(name);
    throw py::type_error(fmt::format("pixels of the type {} are not supported", image.spec.format.c_str()));
}

TypeDesc get_type(const py::array& array) {
    for (const auto& [type, name] : TYPES)
        if (array.dtype().equal(py::dtype(name)))
            return {type};
    throw py::type_error(
        fmt::format("image: pixels of the type {} are not supported", std::string(py::str(array.dtype()))));
}

/// An array of the pixels, which it keeps; (height, width, channels), for volumes with the depth before them.
py::array make_array(MemoryImage&& image) {
    const OIIO::ImageSpec spec = image.spec;
    std::vector<py::ssize_t> shape = {spec.height, spec.width, spec.nchannels};
    if (spec.depth > 1)
        shape.insert(shape.begin(), spec.depth);
    const py::dtype type = get_type(image);
    auto pixels = std::make_unique<image::PixelBuffer>(std::move(image.pixels));
    const std::byte* const data = pixels->data();
    const py::capsule owner(pixels.release(),
                            [](void* buffer) { delete static_cast<image::PixelBuffer*>(buffer); });
    return py::array(type, shape, data, owner);
}

py::tuple read(const py::object& path, unsigned int part) {
    const std::string file = get_path(path, "path");
    start_image_readers();
    MemoryImage image;
    {
        const py::gil_scoped_release unlocked;
        image::ReaderProcess reader;
        image = workflow::read_image(file, part, reader);
    }
    const OIIO::ImageSpec& spec = image.spec;
    const py::tuple origin = py::make_tuple(spec.x, spec.y);
    const py::tuple window = py::make_tuple(spec.full_x, spec.full_y, spec.full_width, spec.full_height);
    const py::tuple channels = make_texts(spec.channelnames);
    const py::dict metadata = make_metadata(spec);
    const py::str format = make_text(image.format);
    const std::string depth = image::get_depth(spec, image.format).get_name();
    return py::make_tuple(make_array(std::move(image)), channels, metadata, origin, window, format, depth);
}

unsigned int count_parts(const py::object& path) {
    const std::string file = get_path(path, "path");
    start_image_readers();
    const py::gil_scoped_release unlocked;
    image::ReaderProcess reader;
    return workflow::count_image_parts(file, reader);
}

/// What describes an array without metadata to OpenImageIO.
OIIO::ImageSpec make_spec(const py::array& pixels) {
    if (pixels.ndim() < 2 || pixels.ndim() > 3 || pixels.size() == 0)
        throw py::value_error(fmt::format("image: expected the shape (height, width, channels), got {}",
                                          std::string(py::str(pixels.attr("shape")))));
    const int channels = pixels.ndim() == 3 ? static_cast<int>(pixels.shape(2)) : 1;
    return {static_cast<int>(pixels.shape(1)), static_cast<int>(pixels.shape(0)), channels, get_type(pixels)};
}

void set_channels(const std::vector<std::string>& channels, OIIO::ImageSpec& spec) {
    if (channels.empty())
        return;
    if (channels.size() != static_cast<std::size_t>(spec.nchannels))
        throw py::value_error(
            fmt::format("channels: there are {} names for {} channels", channels.size(), spec.nchannels));
    spec.channelnames = channels;
    spec.alpha_channel = spec.z_channel = -1;
    for (int i = 0; i < spec.nchannels; ++i) {
        if (spec.channelnames[static_cast<std::size_t>(i)] == "A")
            spec.alpha_channel = i;
        if (spec.channelnames[static_cast<std::size_t>(i)] == "Z")
            spec.z_channel = i;
    }
}

void set_windows(const std::array<int, 2>& origin, const py::object& window, OIIO::ImageSpec& spec) {
    spec.x = origin[0];
    spec.y = origin[1];
    if (window.is_none())
        return;
    const auto [x, y, width, height] = window.cast<std::array<int, 4>>();
    spec.full_x = x;
    spec.full_y = y;
    spec.full_width = width;
    spec.full_height = height;
}

MemoryImage make_image(const py::array& pixels, OIIO::ImageSpec spec, const std::string& format) {
    const py::object dense = py::module_::import("numpy").attr("ascontiguousarray")(pixels);
    const auto array = py::reinterpret_borrow<py::array>(dense);
    MemoryImage image{std::move(spec), format, {}};
    image.pixels.resize(static_cast<std::size_t>(array.nbytes()));
    std::memcpy(image.pixels.data(), array.data(), image.pixels.size());
    return image;
}

/// Everything but the pixels.
struct ImageFacts {
    std::vector<std::string> channels;
    py::dict metadata;
    std::array<int, 2> origin;
    py::object window;
    std::string format;
};

py::tuple write(const py::object& path, const py::array& pixels, const ImageFacts& facts,
                const OutputArguments& arguments, const std::shared_ptr<Converter>& converter) {
    const std::string file = get_path(path, "path");
    OIIO::ImageSpec spec = make_spec(pixels);
    set_channels(facts.channels, spec);
    set_windows(facts.origin, facts.window, spec);
    add_metadata(facts.metadata, spec);
    image::OutputOptions options = arguments.make_output_options();
    options.keeps_space = converter == nullptr;
    if (converter != nullptr) {
        const std::shared_ptr<OpenSession> session = converter->get_session();
        options.colors = workflow::describe_output_colors(converter->get_conversion());
    }
    const MemoryImage image = make_image(pixels, std::move(spec), facts.format);
    diagnostics::Diagnostics notes;
    {
        const py::gil_scoped_release unlocked;
        notes = workflow::write_image(image, file, options);
    }
    return make_diagnostics(notes);
}

ImageReport convert(const Converter& self, const py::object& input, const py::object& output,
                    const ImageArguments& arguments) {
    const std::shared_ptr<OpenSession> session = self.get_session();
    const workflow::ImageJob job{get_path(input, "input"), get_path(output, "output")};
    const workflow::ImageOptions options = arguments.make_image_options();
    start_image_readers();
    const py::gil_scoped_release unlocked;
    return workflow::convert_image(self.get_conversion(), job.input, job.output, options);
}

void add_report(py::module_& module) {
    py::class_<ImageReport>(module, "ImageReport", "The result of converting an image file.")
        .def_readonly("pixels", &ImageReport::pixels, "int: of all parts.")
        .def_readonly("width", &ImageReport::width, "int: of the first part.")
        .def_readonly("height", &ImageReport::height, "int: of the first part.")
        .def_readonly("depth", &ImageReport::depth, "str: of the written colors: 'half', 'uint10'.")
        .def_property_readonly(
            "converted_layers", [](const ImageReport& self) { return make_texts(self.layers.converted); },
            "tuple[str, ...]: layers that were converted; 'rgba' for that without a name.")
        .def_property_readonly(
            "left_layers",
            [](const ImageReport& self) {
                py::dict left;
                for (const workflow::LeftLayer& layer : self.layers.left)
                    left[make_text(layer.name)] = make_text(layer.reason);
                return left;
            },
            "dict[str, str]: layers that were left as they are, and why.")
        .def_property_readonly(
            "notes", [](const ImageReport& self) { return make_diagnostics(self.notes); },
            "tuple[Diagnostic, ...]: what the output format does not support, and so on.");
}

} // namespace

void add_images(py::module_& module) {
    module.def("_read_image", &read, py::arg("path"), py::arg("part"));
    module.def("_count_image_parts", &count_parts, py::arg("path"));
    module.def(
        "_write_image",
        [](const py::object& path, const py::array& pixels, std::vector<std::string> channels,
           const py::dict& metadata, std::array<int, 2> origin, const py::object& window,
           const std::string& format, const std::string& depth, bool dither, const std::string& compression,
           const py::object& quality, const std::shared_ptr<Converter>& converter) {
            return write(path, pixels, {std::move(channels), metadata, origin, window, format},
                         {depth, dither, compression, quality}, converter);
        },
        py::arg("path"), py::arg("pixels"), py::arg("channels"), py::arg("metadata"), py::arg("origin"),
        py::arg("display_window"), py::arg("format"), py::arg("depth"), py::arg("dither"),
        py::arg("compression"), py::arg("quality"), py::arg("converter").none(true));
}

void add_image_conversion(py::module_& module, ConverterType& converter) {
    add_report(module);
    static const std::string documentation =
        std::string("Convert an image file: all parts, with layers of data and metadata kept.\n\n"
                    "input, output: paths; they may be the same file, which is replaced only on success.\n") +
        OUTPUT_ARGUMENTS + LAYER_ARGUMENTS +
        "\nReturn an ImageReport. Raises Error when the input cannot be read, converted, or written in the\n"
        "format of the output, and when the session is closed.";
    converter.def(
        "convert_image",
        [](const Converter& self, const py::object& input, const py::object& output, const std::string& depth,
           bool dither, const std::string& compression, const py::object& quality,
           const py::object& divide_by_alpha, const py::object& layers, const py::object& parts,
           const py::object& skip, int threads) {
            return convert(
                self, input, output,
                {{depth, dither, compression, quality}, divide_by_alpha, layers, parts, skip, threads});
        },
        py::arg("input"), py::arg("output"), py::kw_only(), py::arg("depth") = "", py::arg("dither") = false,
        py::arg("compression") = "", py::arg("quality") = py::none(), py::arg("divide_by_alpha") = py::none(),
        py::arg("layers") = py::none(), py::arg("parts") = py::none(), py::arg("skip") = py::none(),
        py::arg("threads") = 0, documentation.c_str());
}

} // namespace python
