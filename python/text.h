#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>

namespace python {

/// A str of UTF-8; other bytes, as in paths and damaged files, become surrogates as os.fsdecode makes them.
pybind11::str make_text(const std::string& text);

/// A tuple of str.
pybind11::tuple make_texts(const std::vector<std::string>& texts);

/// A str or an os.PathLike as os.fsencode encodes it. Throws TypeError for other objects; `what` names it.
std::string get_path(const pybind11::handle& object, const char* what);

/// A str, an os.PathLike, or an iterable of them; nothing for None.
std::vector<std::string> get_paths(const pybind11::object& object, const char* what);

/// A getter of a text of a structure, for def_property_readonly.
template <class Struct, class Base>
auto text_getter(std::string Base::*field) {
    return [field](const Struct& object) { return make_text(object.*field); };
}

/// Likewise for several.
template <class Struct, class Base>
auto texts_getter(std::vector<std::string> Base::*field) {
    return [field](const Struct& object) { return make_texts(object.*field); };
}

} // namespace python
