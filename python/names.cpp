#include "python/names.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "python/text.h"
#include "workflow/name_resolution.h"
#include "workflow/published_cdls.h"
#include "workflow/published_names.h"

namespace py = pybind11;

namespace python {

namespace {

using workflow::DescribedSpace;
using workflow::DescribedTransform;
using workflow::PublishedCdl;
using workflow::PublishedRole;
using workflow::PublishedView;

/// A color space, and whether the config publishes it.
struct ListedSpace : DescribedSpace {
    bool is_active = true;
};

template <class Value>
py::list make_list(const std::vector<Value>& values) {
    py::list list;
    for (const Value& value : values)
        list.append(value);
    return list;
}

py::list list_spaces(const std::vector<DescribedSpace>& spaces, bool are_active) {
    py::list list;
    for (const DescribedSpace& space : spaces)
        list.append(ListedSpace{space, are_active});
    return list;
}

std::vector<std::string> find_displays() {
    std::vector<std::string> displays;
    for (const PublishedView& view : workflow::get_published_views())
        if (std::find(displays.begin(), displays.end(), view.display) == displays.end())
            displays.push_back(view.display);
    return displays;
}

/// Adds the fields that color spaces and named transforms share.
template <class Struct>
void add_facts(py::class_<Struct>& type) {
    type.def_property_readonly(
            "encoding", [](const Struct& self) { return make_text(self.facts.encoding); },
            "'scene-linear', 'log' and so on; may be empty.")
        .def_property_readonly(
            "categories", [](const Struct& self) { return make_texts(self.facts.categories); },
            "Categories: 'file-io' and so on.")
        .def_property_readonly(
            "aliases", [](const Struct& self) { return make_texts(self.facts.aliases); },
            "Other names that the config accepts.")
        .def_property_readonly(
            "description", [](const Struct& self) { return make_text(self.facts.description); },
            "May be empty, and have several lines.");
}

template <class Struct, class GetName>
void add_repr(py::class_<Struct>& type, const char* name, const GetName& get_name) {
    type.def("__repr__", [name, get_name](const Struct& self) {
        return make_text(fmt::format("<{} '{}'>", name, get_name(self)));
    });
}

void add_space(py::module_& module) {
    py::class_<ListedSpace> type(module, "ColorSpace", "A color space of a config.");
    type.def_property_readonly("label", text_getter<ListedSpace>(&ListedSpace::label),
                               "Its unique name, with the family: 'Tavelion|sRGB'.")
        .def_property_readonly("name", text_getter<ListedSpace>(&ListedSpace::name), "Without its family.")
        .def_property_readonly("family", text_getter<ListedSpace>(&ListedSpace::family), "May be empty.")
        .def_property_readonly(
            "reference", [](const ListedSpace& self) { return workflow::get_reference_name(self); },
            "'scene' or 'display'.")
        .def_readonly("is_data", &ListedSpace::is_data, "It is never converted.")
        .def_readonly("is_active", &ListedSpace::is_active,
                      "False for one that the config declares inactive: it is found by name only.");
    add_facts(type);
    add_repr(type, "ColorSpace", [](const ListedSpace& self) { return self.label; });
}

void add_view(py::module_& module) {
    py::class_<PublishedView> type(module, "View", "A view of a display.");
    type.def_property_readonly("label", text_getter<PublishedView>(&PublishedView::label),
                               "Its unique name: 'sRGB.Film'.")
        .def_property_readonly("display", text_getter<PublishedView>(&PublishedView::display), "Its display.")
        .def_property_readonly("name", text_getter<PublishedView>(&PublishedView::view),
                               "Without its display.")
        .def_property_readonly("color_space", text_getter<PublishedView>(&PublishedView::color_space),
                               "Label of its color space; may be empty.")
        .def_property_readonly("named_transform", text_getter<PublishedView>(&PublishedView::named_transform),
                               "Used instead of a color space; may be empty.")
        .def_property_readonly("view_transform", text_getter<PublishedView>(&PublishedView::view_transform),
                               "May be empty.")
        .def_property_readonly("looks", text_getter<PublishedView>(&PublishedView::looks),
                               "The list of looks, as in the config; may be empty.")
        .def_property_readonly("description", text_getter<PublishedView>(&PublishedView::description),
                               "May be empty, and have several lines.")
        .def_readonly("is_shared", &PublishedView::is_shared, "One of the config's shared views.")
        .def_readonly("is_default", &PublishedView::is_default, "The default view of the config.");
    add_repr(type, "View", [](const PublishedView& self) { return self.label; });
}

void add_role(py::module_& module) {
    py::class_<PublishedRole> type(module, "Role", "A role and its color space.");
    type.def_property_readonly("name", text_getter<PublishedRole>(&PublishedRole::role), "'scene_linear'.")
        .def_property_readonly("color_space", text_getter<PublishedRole>(&PublishedRole::color_space),
                               "Name of its color space, without the family.")
        .def_readonly("is_in_config", &PublishedRole::is_in_config,
                      "False if the config does not assign it, and another color space stands in.");
    add_repr(type, "Role", [](const PublishedRole& self) { return self.role; });
}

void add_transform(py::module_& module) {
    py::class_<DescribedTransform> type(module, "NamedTransform", "A named transform of a config.");
    type.def_property_readonly("name", text_getter<DescribedTransform>(&DescribedTransform::name),
                               "Its name.")
        .def_property_readonly("family", text_getter<DescribedTransform>(&DescribedTransform::family),
                               "May be empty.")
        .def_readonly("has_forward", &DescribedTransform::has_forward,
                      "The config defines the forward direction; else it is the inverse of the other.")
        .def_readonly("has_inverse", &DescribedTransform::has_inverse, "Likewise for the inverse direction.")
        .def_readonly("is_active", &DescribedTransform::is_active,
                      "The config does not declare it inactive.");
    add_facts(type);
    add_repr(type, "NamedTransform", [](const DescribedTransform& self) { return self.name; });
}

py::tuple make_numbers(const float (&numbers)[3]) {
    return py::make_tuple(numbers[0], numbers[1], numbers[2]);
}

void add_cdl(py::module_& module) {
    py::class_<PublishedCdl> type(module, "CDL", "A color correction (ASC CDL) that can be chosen by name.");
    type.def_property_readonly(
            "name", [](const PublishedCdl& self) { return make_text(self.correction.id); }, "Its name.")
        .def_property_readonly(
            "slope", [](const PublishedCdl& self) { return make_numbers(self.correction.slope); },
            "Red, green, blue.")
        .def_property_readonly(
            "offset", [](const PublishedCdl& self) { return make_numbers(self.correction.offset); },
            "Red, green, blue.")
        .def_property_readonly(
            "power", [](const PublishedCdl& self) { return make_numbers(self.correction.power); },
            "Red, green, blue.")
        .def_property_readonly(
            "saturation", [](const PublishedCdl& self) { return self.correction.saturation; }, "One number.")
        .def_property_readonly("file", text_getter<PublishedCdl>(&PublishedCdl::file),
                               "Path of its file; empty when the numbers were given directly.");
    add_repr(type, "CDL", [](const PublishedCdl& self) { return self.correction.id; });
}

} // namespace

void add_names(py::module_& module) {
    add_space(module);
    add_view(module);
    add_role(module);
    add_transform(module);
    add_cdl(module);
}

void add_name_lists(SessionType& session) {
    session
        .def_property_readonly(
            "color_spaces",
            [](OpenSession& self) { return self.get(), list_spaces(workflow::get_described_spaces(), true); },
            "list[ColorSpace]: the active color spaces, in the order of the config.")
        .def_property_readonly(
            "inactive_color_spaces",
            [](OpenSession& self) { return self.get(), list_spaces(workflow::get_inactive_spaces(), false); },
            "list[ColorSpace]: those that the config declares inactive.")
        .def_property_readonly(
            "displays", [](OpenSession& self) { return self.get(), make_texts(find_displays()); },
            "tuple[str, ...]: the displays, in the order of the config.")
        .def_property_readonly(
            "views", [](OpenSession& self) { return self.get(), make_list(workflow::get_published_views()); },
            "list[View]: the views of all displays.")
        .def_property_readonly(
            "roles", [](OpenSession& self) { return self.get(), make_list(workflow::get_published_roles()); },
            "list[Role]: the roles that are in use, scene_linear first.")
        .def_property_readonly(
            "looks",
            [](OpenSession& self) { return self.get(), make_texts(workflow::get_published_looks()); },
            "tuple[str, ...]: names of the looks, in the order of the config.")
        .def_property_readonly(
            "named_transforms",
            [](OpenSession& self) { return self.get(), make_list(workflow::get_named_transforms()); },
            "list[NamedTransform]: all of them, inactive ones included.")
        .def_property_readonly(
            "cdls", [](OpenSession& self) { return make_list(workflow::get_published_cdls(self.get())); },
            "list[CDL]: the color corrections that can be chosen by name.")
        .def(
            "resolve",
            [](OpenSession& self, const std::string& name) {
                return make_text(workflow::resolve_color_space(self.get(), name).label);
            },
            py::arg("name"),
            "Return the label of the color space for a label, a name without family, a role or an alias.\n\n"
            "Raises Error ('color-space-unknown') with the nearest names as the hint.");
}

} // namespace python
