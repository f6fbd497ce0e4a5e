#include "workflow/file_space.h"

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"
#include "host/sys/sys_filesystem.h"
#include "workflow/format_associations.h"

namespace workflow {

namespace {

/// The published label of a color space with or without its family; empty when it is not published.
CoreString find_label(const CoreString& name) {
    if (ColorIO::color_space_exists(name))
        return name;
    const CoreString bare = CoreString::after_first(name, ColorIOManager::FAMILY_SEPARATOR);
    const CoreString label = ColorIO::get_full_color_space_name(bare);
    return ColorIO::color_space_exists(label) ? label : CoreString();
}

CoreString find_fallback() {
    for (const CoreString& name : {ColorIO::get_default_color_space_name(), ColorIO::get_ROLE_SCENE_LINEAR()})
        if (const CoreString label = find_label(name); !label.is_empty())
            return label;
    return ColorIO::get_color_space_names().get_count() > 0 ? ColorIO::get_color_space_name(0) : CoreString();
}

} // namespace

FileSpace find_file_space(const std::string& path) {
    const CoreString extension = SysFilesystem::get_file_extension(path.c_str());
    const CoreString associated = ColorIO::get_instance()->get_default_color_space_from_ext(extension);
    const FormatAssociation association = find_format_association(extension.get_data());
    const std::string reason =
        fmt::format("from {}, category {}", describe_association_source(), association.category);
    FileSpace space;
    space.associated_space = associated.get_data();
    if (const CoreString label = find_label(associated); !label.is_empty()) {
        space.color_space = label.get_data();
        space.reason = reason;
        return space;
    }
    space.color_space = find_fallback().get_data();
    space.reason = fmt::format("assumed, because the config lacks '{}', {}", space.associated_space, reason);
    space.is_assumed = true;
    return space;
}

} // namespace workflow
