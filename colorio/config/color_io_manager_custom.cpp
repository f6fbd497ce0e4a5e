#include "colorio/cdl/color_io_cdl_transform.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/config_loads.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/facade/pending_list.h"
#include "colorio/names/findable_views.h"
#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "colorio/ocio/transform.h"
#include "host/of/of_app.h"
#include "host/sys/sys_filesystem.h"

namespace {

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;

ocio::ColorSpaceRcPtr make_named_space(const ColorSpaceDef& def) {
    ocio::ColorSpaceRcPtr space = ocio::create_color_space();
    ocio::set_name(space, def.name.get_data());
    ocio::set_family(space, ColorIOManager::BUILTIN_FAMILY.data);
    return space;
}

/// A color space with the record's bit depth and allocation.
ocio::ColorSpaceRcPtr make_space(const ColorSpaceDef& def, const ocio::ConstTransformRcPtr& transform) {
    ocio::ColorSpaceRcPtr space = make_named_space(def);
    ocio::set_bit_depth(space, static_cast<ocio::BitDepth>(def.bit_depth));
    ocio::set_allocation(space, static_cast<ocio::Allocation>(def.allocation));
    const int count = ocio::get_allocation(space) == ocio::ALLOCATION_LG2 ? 3 : 2;
    ocio::set_allocation_vars(space, count, def.allocation_vars);
    ocio::set_transform(space, transform, ocio::COLORSPACE_DIR_FROM_REFERENCE);
    return space;
}

/// A color space that applies a CDL in scene-linear; bit depth and allocation of the record are ignored.
ocio::ColorSpaceRcPtr make_grade_space(const ColorSpaceDef& def, CDLFileReader& files) {
    ocio::ColorSpaceRcPtr space = make_named_space(def);
    ocio::set_bit_depth(space, ocio::BIT_DEPTH_F32);
    ocio::set_allocation(space, ocio::ALLOCATION_LG2);
    const float variables[] = {-15.0f, 6.0f, 0.0f};
    ocio::set_allocation_vars(space, 3, variables);
    ocio::set_transform(space, files.read(def.cdl_file, def.cccid), ocio::COLORSPACE_DIR_FROM_REFERENCE);
    return space;
}

ocio::FileTransformRcPtr make_lut_transform(const ColorSpaceDef& def) {
    ocio::FileTransformRcPtr transform = ocio::create_file_transform();
    ocio::set_src(transform, def.lut_file.get_data());
    ocio::set_interpolation(transform, ocio::INTERP_LINEAR);
    return transform;
}

ocio::ColorSpaceRcPtr make_graded_lut_space(const ColorSpaceDef& def, CDLFileReader& files) {
    ocio::GroupTransformRcPtr group = ocio::create_group_transform();
    ocio::push_back(group, files.read(def.cdl_file, def.cccid));
    ocio::push_back(group, make_lut_transform(def));
    return make_space(def, group);
}

/// The color space of a record; null when it needs none. Throws when its files have errors.
ocio::ColorSpaceRcPtr make_custom_space(const ColorSpaceDef& def, bool has_lut, bool has_cdl,
                                        CDLFileReader& files) {
    if (has_lut && has_cdl)
        return make_graded_lut_space(def, files);
    if (has_cdl)
        return make_grade_space(def, files);
    return has_lut ? make_space(def, make_lut_transform(def)) : ocio::ColorSpaceRcPtr();
}

/// Reports what a record lacks. One that lacks everything makes no color space.
void report_missing_files(const ColorSpaceDef& def, bool has_lut, bool has_cdl) {
    const CoreLogLevel level = has_lut || has_cdl ? LOG_WARNING : LOG_ERROR;
    if (!has_lut && !def.lut_file.is_empty())
        report_unreadable(level, diagnostics::Code::LUT_MISSING, def.name, def.lut_file);
    if (!has_cdl && !def.cdl_file.is_empty())
        report_unreadable(level, diagnostics::Code::LUT_MISSING, def.name, def.cdl_file);
    if (def.lut_file.is_empty() && def.cdl_file.is_empty())
        report(level, diagnostics::Code::CUSTOM_COLOR_SPACE_INVALID, def.name,
               "it names neither a LUT nor a CDL file");
}

} // namespace

bool ColorIOManager::add_custom_luts_to_tavelion_config(const CoreVector<ColorSpaceDef>& defs) {
    if (!tavelion_config)
        return false;
    if (config_loads)
        config_loads->forget_sound(tavelion_config);
    CDLFileReader files(RepeatedIds::REFUSED);
    FindableViews views(display_view_names, config);
    for (const ColorSpaceDef& def : defs) {
        if (!add_custom_space(def, files))
            continue;
        const CoreString label = CoreString(BUILTIN_FAMILY) + DISPLAY_SEPARATOR + def.name;
        if (views.contain(label)) {
            log_message(LOG_WARNING, "Color Management: duplicate display view '", label, "' was ignored.\n");
            report(LOG_WARNING, diagnostics::Code::NAME_DUPLICATE, label,
                   "the view '" + std::string(label.view()) + "' is already defined");
            continue;
        }
        ocio::add_display(tavelion_config, BUILTIN_FAMILY.data, def.name.get_data(), def.name.get_data(), "");
        if (is_using_tavelion_config())
            views.note_shown(label);
    }
    return check_config(tavelion_config);
}

bool ColorIOManager::add_custom_space(const ColorSpaceDef& def, CDLFileReader& files) {
    if (def.is_builtin)
        return false;
    const bool has_lut = !def.lut_file.is_empty() && files.exists(def.lut_file);
    const bool has_cdl = !def.cdl_file.is_empty() && files.exists(def.cdl_file);
    report_missing_files(def, has_lut, has_cdl);
    ocio::ColorSpaceRcPtr space;
    const auto add = [&] {
        try {
            space = make_custom_space(def, has_lut, has_cdl, files);
            if (space)
                ocio::add_color_space(tavelion_config, space);
        } catch (const ocio::Exception&) {
            rethrow_about(def.name, diagnostics::Code::CUSTOM_COLOR_SPACE_INVALID);
        }
    };
    const auto log_failure = [&] {
        log_message(LOG_ERROR, "Color Management: ",
                    has_lut && has_cdl ? "the custom color space '" : "custom color space '", def.name,
                    "' has errors and was ignored.\n");
    };
    return log_ocio_errors(LOG_ERROR, add, log_failure) && space;
}

void ColorIOManager::set_tavelion_config(const CoreVector<ColorSpaceDef>& defs) {
    at_boundary([&] { replace_custom_spaces(defs); });
}

void ColorIOManager::replace_custom_spaces(const CoreVector<ColorSpaceDef>& defs) {
    // Both configs may be replaced; the one that was active stays active.
    const bool builtin_was_active = is_using_tavelion_config();
    const bool file_was_active = config && config == file_config;
    {
        const PendingList records(tavelion_color_spaces, CoreVector<ColorSpaceDef>(defs));
        tavelion_color_spaces.remove_all();
        if (tavelion_config) {
            ocio::clear_color_spaces(tavelion_config);
            ocio::clear_displays(tavelion_config);
        }
        forget_views();

        forget_cached_files(); // LUT files may have been edited since they were read.
        init_default_tavelion_config();
        settle_default_color_space_name(app_uses_file_config(), Reload::ADOPT_IF_VALID);
        add_custom_luts_to_tavelion_config(records.get());
    }
    const bool file_config_wanted = app_uses_file_config() && (!app->get_color_space_file_path().is_empty() ||
                                                               file_config_path == FROM_ENV);
    if (builtin_was_active || !file_config_wanted)
        config = tavelion_config;
    else if (file_was_active)
        config = get_file_config_or_builtin();
    announce_new_lists(update_enums_and_lists());
}
