#include "tool/published_rows.h"

#include "tool/correction_rows.h"

namespace tool {

namespace {

template <class Row>
void add_facts(RowModel<Row>& rows) {
    rows.add("encoding", "encoding", [](const Row& row) { return row.facts.encoding; });
    rows.add("categories", "categories", [](const Row& row) { return row.facts.categories; });
    rows.add("aliases", "aliases", [](const Row& row) { return row.facts.aliases; });
    rows.add(nullptr, "description", [](const Row& row) { return row.facts.description; });
}

} // namespace

RowModel<workflow::DescribedSpace> make_space_rows(bool are_published, bool shows_reference) {
    using Space = workflow::DescribedSpace;
    using Rows = RowModel<Space>;
    Rows rows(are_published ? Rows::NUMBERED : Rows::UNNUMBERED);
    rows.add(are_published ? "color space" : "inactive color space", "name", &Space::name)
        .add("family", "family", &Space::family);
    if (are_published)
        rows.add("label", "label", &Space::label);
    rows.add(nullptr, "reference", [](const Space& space) { return get_reference_name(space); })
        .add(nullptr, "data", &Space::is_data)
        .add("kind", nullptr, [=](const Space& space) { return describe_kind(space, shows_reference); });
    add_facts(rows);
    return rows;
}

RowModel<workflow::DescribedTransform> make_transform_rows() {
    using Transform = workflow::DescribedTransform;
    RowModel<Transform> rows;
    rows.add("named transform", "name", &Transform::name)
        .add("family", "family", &Transform::family)
        .add(nullptr, "active", &Transform::is_active)
        .add("directions", nullptr, [](const Transform& transform) { return describe_directions(transform); })
        .add(nullptr, "forward", &Transform::has_forward)
        .add(nullptr, "inverse", &Transform::has_inverse);
    add_facts(rows);
    rows.add("", nullptr, [](const Transform& transform) { return transform.is_active ? "" : "inactive"; });
    return rows;
}

RowModel<workflow::PublishedView> make_view_rows(bool are_published) {
    using View = workflow::PublishedView;
    using Rows = RowModel<View>;
    Rows rows(are_published ? Rows::NUMBERED : Rows::NUMBERED_IN_TABLES);
    return rows.add(are_published ? "view" : "inactive view", "label", &View::label)
        .add("display", "display", &View::display)
        .add("view of the display", "view", &View::view)
        .add("color space", "color_space",
             [](const View& view) {
                 return Cell(view.color_space + (view.shows_unpublished ? " (not published)" : ""),
                             view.color_space);
             })
        .add(nullptr, "color_space_published",
             [](const View& view) { return !view.color_space.empty() && !view.shows_unpublished; })
        .add("named transform", "named_transform", &View::named_transform)
        .add("view transform", "view_transform", &View::view_transform)
        .add("looks", "looks", &View::looks)
        .add(nullptr, "shared", &View::is_shared)
        .add(nullptr, "description", &View::description)
        .add(nullptr, "default", &View::is_default)
        .add("", nullptr, [](const View& view) { return describe_flags(view); });
}

RowModel<workflow::PublishedCdl> make_cdl_rows() {
    using Cdl = workflow::PublishedCdl;
    RowModel<Cdl> rows(RowModel<Cdl>::NUMBERED);
    rows.add("CDL", "name", [](const Cdl& cdl) { return cdl.correction.id; });
    add_numbers(rows, [](const Cdl& cdl) { return cdl.correction; });
    return rows.add("from", nullptr, [](const Cdl& cdl) { return describe_source(cdl); })
        .add(nullptr, "file", &Cdl::file)
        .add(nullptr, "file_id", &Cdl::file_id)
        .add(nullptr, "builtin", &Cdl::is_builtin);
}

} // namespace tool
