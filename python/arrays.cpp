#include "python/arrays.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace py = pybind11;

namespace python {

namespace {

using workflow::PixelArray;

constexpr py::ssize_t MAX_AXES = static_cast<py::ssize_t>(PixelArray::AXES) + 1;

/// NumPy's numbers of types, which never change.
enum NumpyType { UBYTE = 2, USHORT = 4, FLOAT = 11, HALF = 23 };

PixelArray::Type get_type(const py::array& array, const char* name) {
    const py::dtype type = array.dtype();
    const char order = type.byteorder();
    const bool is_native = order == '=' || order == '|';
    const int number = is_native ? type.num() : -1;
    switch (number) {
    case UBYTE:
        return PixelArray::UINT8;
    case USHORT:
        return PixelArray::UINT16;
    case HALF:
        return PixelArray::HALF;
    case FLOAT:
        return PixelArray::FLOAT;
    default:
        throw py::type_error(
            fmt::format("{}: expected uint8, uint16, float16 or float32 in native byte order, got {}", name,
                        std::string(py::str(py::handle(type)))));
    }
}

bool is_aligned(const py::array& array) {
    return (array.flags() & py::detail::npy_api::NPY_ARRAY_ALIGNED_) != 0;
}

[[noreturn]] void refuse_shape(const py::array& array, const char* name, const char* expected) {
    const std::string shape = py::str(array.attr("shape"));
    throw py::value_error(fmt::format("{}: expected {}, got the shape {}", name, expected, shape));
}

/// Whether two different elements may be in the same place. Elements that interleave in an unusual way count
/// as well.
bool may_overlap_itself(const py::array& array) {
    std::vector<std::pair<py::ssize_t, py::ssize_t>> axes; // distance, number of elements
    for (py::ssize_t axis = 0; axis < array.ndim(); ++axis)
        if (array.shape(axis) > 1)
            axes.emplace_back(std::abs(array.strides(axis)), array.shape(axis));
    std::sort(axes.begin(), axes.end());
    py::ssize_t span = array.itemsize();
    for (const auto& [distance, count] : axes) {
        if (distance < span)
            return true;
        span = distance * (count - 1) + span;
    }
    return false;
}

/// The first and one past the last byte of the elements.
std::pair<const char*, const char*> find_bounds(const py::array& array) {
    const char* first = static_cast<const char*>(array.data());
    const char* end = first + array.itemsize();
    for (py::ssize_t axis = 0; axis < array.ndim(); ++axis) {
        const py::ssize_t reach = array.strides(axis) * (array.shape(axis) - 1);
        (reach < 0 ? first : end) += reach;
    }
    return {first, end};
}

} // namespace

PixelArray get_pixels(const py::array& array, int channel_axis, const char* name) {
    const py::ssize_t axes = array.ndim();
    if (axes < 1 || axes > MAX_AXES)
        refuse_shape(array, name, "1 to 4 dimensions");
    const py::ssize_t of_channels = channel_axis < 0 ? channel_axis + axes : channel_axis;
    if (of_channels < 0 || of_channels >= axes)
        throw py::value_error(
            fmt::format("channel_axis: {} is not an axis of {} dimensions", channel_axis, axes));
    const py::ssize_t channels = array.shape(of_channels);
    if (channels != 3 && channels != 4)
        refuse_shape(array, name, "3 or 4 channels");

    PixelArray pixels;
    pixels.type = get_type(array, name);
    if (!is_aligned(array))
        throw py::value_error(fmt::format("{}: its elements are not aligned", name));
    pixels.data =
        const_cast<std::byte*>(static_cast<const std::byte*>(array.data())); // written on demand only
    pixels.channels = static_cast<int>(channels);
    pixels.channel_stride = array.strides(of_channels);
    pixels.extents.fill(1);
    std::size_t place = PixelArray::AXES;
    for (py::ssize_t axis = axes; axis-- > 0;)
        if (axis != of_channels) {
            --place;
            pixels.extents[place] = static_cast<std::size_t>(array.shape(axis));
            pixels.strides[place] = array.strides(axis);
        }
    return pixels;
}

PixelArray get_writable_pixels(const py::array& array, int channel_axis, const char* name) {
    const PixelArray pixels = get_pixels(array, channel_axis, name);
    if (!array.writeable())
        throw py::value_error(fmt::format("{}: it is read-only", name));
    if (count_pixels(pixels) > 1 && may_overlap_itself(array))
        throw py::value_error(fmt::format("{}: its elements overlap each other", name));
    return pixels;
}

void check_overlap(const py::array& source, const py::array& target) {
    if (source.is(target) || source.size() == 0 || target.size() == 0)
        return;
    const auto [source_first, source_end] = find_bounds(source);
    const auto [target_first, target_end] = find_bounds(target);
    if (source_end <= target_first || target_end <= source_first)
        return;
    const bool are_same = source.data() == target.data() && source.dtype().is(target.dtype()) &&
                          source.ndim() == target.ndim() &&
                          std::equal(source.strides(), source.strides() + source.ndim(), target.strides());
    if (!are_same)
        throw py::value_error("out: it overlaps the source, but is not the same array");
}

py::array get_array(const py::object& object) {
    if (py::isinstance<py::array>(object))
        return py::reinterpret_borrow<py::array>(object);
    py::array made = py::array_t<float, py::array::c_style | py::array::forcecast>::ensure(object);
    if (!made) {
        PyErr_Clear();
        throw py::type_error(fmt::format("array: expected numbers, got {}", Py_TYPE(object.ptr())->tp_name));
    }
    return made;
}

py::array require_array(const py::object& object, const char* name) {
    if (!py::isinstance<py::array>(object))
        throw py::type_error(
            fmt::format("{}: expected a numpy.ndarray, got {}", name, Py_TYPE(object.ptr())->tp_name));
    return py::reinterpret_borrow<py::array>(object);
}

std::size_t count_pixels(const PixelArray& pixels) {
    std::size_t count = 1;
    for (const std::size_t extent : pixels.extents)
        count *= extent;
    return count;
}

} // namespace python
