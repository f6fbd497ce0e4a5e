#include "python/text.h"

namespace py = pybind11;

namespace python {

py::str make_text(const std::string& text) {
    PyObject* made =
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
    if (made == nullptr)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(made);
}

py::tuple make_texts(const std::vector<std::string>& texts) {
    py::tuple made(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        made[i] = make_text(texts[i]);
    return made;
}

std::string get_path(const py::handle& object, const char* what) {
    PyObject* encoded = nullptr;
    if (PyUnicode_FSConverter(object.ptr(), &encoded) == 0) {
        if (PyErr_ExceptionMatches(PyExc_TypeError) == 0)
            throw py::error_already_set();
        PyErr_Clear();
        throw py::type_error(std::string(what) + ": expected a str or an os.PathLike, got " +
                             Py_TYPE(object.ptr())->tp_name);
    }
    const auto bytes = py::reinterpret_steal<py::bytes>(encoded);
    return std::string(PyBytes_AS_STRING(bytes.ptr()),
                       static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr())));
}

std::vector<std::string> get_paths(const py::object& object, const char* what) {
    if (object.is_none())
        return {};
    const bool is_single = py::isinstance<py::str>(object) || py::isinstance<py::bytes>(object) ||
                           py::hasattr(object, "__fspath__");
    if (is_single || !py::isinstance<py::iterable>(object))
        return {get_path(object, what)};
    std::vector<std::string> paths;
    for (const py::handle one : object)
        paths.push_back(get_path(one, what));
    return paths;
}

} // namespace python
