#include "python/metadata.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "python/text.h"

namespace py = pybind11;

namespace python {

namespace {

using OIIO::TypeDesc;

/// Attributes that writers expect as another type than int, though their values are integers.
const std::pair<const char*, TypeDesc> KNOWN_TYPES[] = {{"smpte:TimeCode", OIIO::TypeTimeCode},
                                                        {"smpte:KeyCode", OIIO::TypeKeyCode}};

/// The values of an attribute as `Value`, which need not be aligned.
template <class Value, class Made>
py::tuple make_values(const OIIO::ParamValue& attribute) {
    const std::size_t count = attribute.type().basevalues() * static_cast<std::size_t>(attribute.nvalues());
    py::tuple values(count);
    for (std::size_t i = 0; i < count; ++i) {
        Value value;
        std::memcpy(&value, static_cast<const char*>(attribute.data()) + i * sizeof(Value), sizeof(Value));
        values[i] = Made(value);
    }
    return values;
}

/// Empty for other types than numbers.
py::tuple make_numbers(const OIIO::ParamValue& attribute) {
    switch (attribute.type().basetype) {
    case TypeDesc::INT8:
        return make_values<std::int8_t, py::int_>(attribute);
    case TypeDesc::UINT8:
        return make_values<std::uint8_t, py::int_>(attribute);
    case TypeDesc::INT16:
        return make_values<std::int16_t, py::int_>(attribute);
    case TypeDesc::UINT16:
        return make_values<std::uint16_t, py::int_>(attribute);
    case TypeDesc::INT32:
        return make_values<std::int32_t, py::int_>(attribute);
    case TypeDesc::UINT32:
        return make_values<std::uint32_t, py::int_>(attribute);
    case TypeDesc::INT64:
        return make_values<std::int64_t, py::int_>(attribute);
    case TypeDesc::UINT64:
        return make_values<std::uint64_t, py::int_>(attribute);
    case TypeDesc::FLOAT:
        return make_values<float, py::float_>(attribute);
    case TypeDesc::DOUBLE:
        return make_values<double, py::float_>(attribute);
    default:
        return py::tuple();
    }
}

py::tuple make_rows(const py::tuple& numbers, std::size_t width) {
    py::tuple rows(numbers.size() / width);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        py::tuple values(width);
        for (std::size_t column = 0; column < width; ++column)
            values[column] = numbers[row * width + column];
        rows[row] = values;
    }
    return rows;
}

py::object make_texts_of(const OIIO::ParamValue& attribute) {
    if (attribute.type().basevalues() == 1)
        return make_text(attribute.get_string(0));
    std::vector<std::string> texts;
    for (int i = 0; i < static_cast<int>(attribute.type().basevalues()); ++i)
        texts.push_back(attribute.get_string_indexed(i));
    return make_texts(texts);
}

/// None for a type that has no counterpart.
py::object make_value(const OIIO::ParamValue& attribute) {
    const TypeDesc type = attribute.type();
    if (type.basetype == TypeDesc::STRING)
        return make_texts_of(attribute);
    if (type.basetype == TypeDesc::UINT8 && type.arraylen != 0)
        return py::bytes(static_cast<const char*>(attribute.data()), type.size());
    py::tuple numbers = make_numbers(attribute);
    if (numbers.empty())
        return py::none();
    if (type.vecsemantics == TypeDesc::RATIONAL && numbers.size() == 2 &&
        numbers[1].cast<std::int64_t>() != 0)
        return py::module_::import("fractions").attr("Fraction")(*numbers);
    if (type == OIIO::TypeMatrix44)
        return make_rows(numbers, 4);
    if (type == OIIO::TypeMatrix33)
        return make_rows(numbers, 3);
    return numbers.size() == 1 ? py::object(numbers[0]) : py::object(numbers);
}

[[noreturn]] void refuse(const std::string& name) {
    throw py::type_error(
        fmt::format("metadata: the value of '{}' is not a str, bytes, a number or several", name));
}

void add_integers(const std::string& name, const py::sequence& values, OIIO::ImageSpec& spec) {
    std::vector<int> numbers;
    for (const py::handle value : values)
        numbers.push_back(value.cast<int>());
    TypeDesc type = OIIO::TypeInt;
    if (numbers.size() > 1)
        type = TypeDesc(TypeDesc::INT32, static_cast<int>(numbers.size()));
    for (const auto& [known, known_type] : KNOWN_TYPES)
        if (name == known && known_type.basevalues() == numbers.size())
            type = known_type;
    spec.attribute(name, type, numbers.data());
}

void add_floats(const std::string& name, const py::sequence& values, TypeDesc type, OIIO::ImageSpec& spec) {
    std::vector<float> numbers;
    for (const py::handle value : values)
        numbers.push_back(value.cast<float>());
    spec.attribute(name, type, numbers.data());
}

void add_matrix(const std::string& name, const py::sequence& rows, OIIO::ImageSpec& spec) {
    py::list numbers;
    for (const py::handle row : rows)
        for (const py::handle number : row)
            numbers.append(number);
    if (numbers.size() != 9 && numbers.size() != 16)
        refuse(name);
    add_floats(name, numbers, numbers.size() == 16 ? OIIO::TypeMatrix44 : OIIO::TypeMatrix33, spec);
}

void add_texts(const std::string& name, const py::sequence& values, OIIO::ImageSpec& spec) {
    std::vector<std::string> texts;
    std::vector<const char*> pointers;
    for (const py::handle value : values)
        texts.push_back(value.cast<std::string>());
    for (const std::string& text : texts)
        pointers.push_back(text.c_str());
    spec.attribute(name, TypeDesc(TypeDesc::STRING, static_cast<int>(texts.size())), pointers.data());
}

template <class Kind>
bool are_all(const py::sequence& values) {
    for (const py::handle value : values)
        if (!py::isinstance<Kind>(value))
            return false;
    return true;
}

void add_several(const std::string& name, const py::sequence& values, OIIO::ImageSpec& spec) {
    if (values.empty())
        refuse(name);
    if (py::isinstance<py::tuple>(values[0]) || py::isinstance<py::list>(values[0]))
        add_matrix(name, values, spec);
    else if (are_all<py::str>(values))
        add_texts(name, values, spec);
    else if (are_all<py::int_>(values))
        add_integers(name, values, spec);
    else
        add_floats(name, values, TypeDesc(TypeDesc::FLOAT, static_cast<int>(values.size())), spec);
}

void add_value(const std::string& name, const py::handle& value, OIIO::ImageSpec& spec) {
    if (py::isinstance<py::str>(value)) {
        spec.attribute(name, value.cast<std::string>());
    } else if (py::isinstance<py::bytes>(value)) {
        const std::string bytes = value.cast<std::string>();
        spec.attribute(name, TypeDesc(TypeDesc::UINT8, static_cast<int>(bytes.size())), bytes.data());
    } else if (py::isinstance<py::int_>(value)) { // and bool
        add_integers(name, py::make_tuple(value), spec);
    } else if (py::isinstance(value, py::module_::import("fractions").attr("Fraction"))) {
        const int numbers[] = {value.attr("numerator").cast<int>(), value.attr("denominator").cast<int>()};
        spec.attribute(name, OIIO::TypeRational, numbers);
    } else if (py::isinstance<py::tuple>(value) || py::isinstance<py::list>(value)) {
        add_several(name, py::reinterpret_borrow<py::sequence>(value), spec);
    } else {
        spec.attribute(name, value.cast<float>());
    }
}

} // namespace

py::dict make_metadata(const OIIO::ImageSpec& spec) {
    py::dict metadata;
    for (const OIIO::ParamValue& attribute : spec.extra_attribs)
        if (const py::object value = make_value(attribute); !value.is_none())
            metadata[make_text(attribute.name().string())] = value;
    return metadata;
}

void add_metadata(const py::dict& metadata, OIIO::ImageSpec& spec) {
    for (const auto& [key, value] : metadata) {
        const auto name = key.cast<std::string>();
        try {
            add_value(name, value, spec);
        } catch (const py::cast_error&) {
            refuse(name);
        }
    }
}

} // namespace python
