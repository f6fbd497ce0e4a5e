#include <algorithm>
#include <memory>

#include "colorio/cdl/added_cdls.h"
#include "colorio/cdl/cdl_document.h"
#include "colorio/cdl/color_io_cdl_transform.h"
#include "colorio/cdl/library_cdls.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/library_messages.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/facade/pending_list.h"
#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "colorio/ocio/transform.h"
#include "host/of/of_app.h"
#include "host/sys/sys_filesystem.h"

namespace {

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

ocio::ColorSpaceRcPtr make_CDL_space(const CoreString& name, const ocio::CDLTransformRcPtr& transform) {
    ocio::ColorSpaceRcPtr space = ocio::create_color_space();
    ocio::set_name(space, name.get_data());
    ocio::set_bit_depth(space, ocio::BIT_DEPTH_F32);
    ocio::set_allocation(space, ocio::ALLOCATION_LG2);
    ocio::set_direction(transform, ocio::TRANSFORM_DIR_FORWARD);
    ocio::set_transform(space, transform, ocio::COLORSPACE_DIR_FROM_REFERENCE);
    return space;
}

} // namespace

bool ColorIOManager::init_default_CDL_tavelion_config() {
    cdl_config_ready = false;
    CoreString folder;
    const bool has_folder = app && app->create_temp_folder(LUT_FOLDER, folder);
    if (!has_folder) {
        log_message(LOG_ERROR,
                    "Color Management: failed to create the temporary folder for the built-in CDL files.\n");
        report(LOG_ERROR, diagnostics::Code::CONFIG_BUILTIN, CoreString(),
               "the temporary folder for the built-in CDLs cannot be created");
    }
    const bool made = log_config_errors([&] {
        const auto nothing_added = std::make_shared<AddedCDLs>();
        cdl_config = ocio::create_config();
        added_cdls = nothing_added;
        if (has_folder)
            fill_builtin_CDL_config(folder);
    });
    cdl_config_ready = made && has_folder && validate_ocio_config(cdl_config);
    return cdl_config_ready;
}

void ColorIOManager::fill_builtin_CDL_config(const CoreString& folder) {
    ocio::set_working_dir(cdl_config, folder.get_data());
    append_builtin_CDL();

    ColorDecisionListDef identity = make_identity_CDL();
    identity.name = s_default_CDL_name;
    const ocio::CDLTransformRcPtr transform = make_CDL_transform(identity);
    ocio::add_color_space(cdl_config, make_CDL_space(identity.name, transform));
    ocio::add_display(cdl_config, BUILTIN_FAMILY.data, ocio::get_id(transform), identity.name.get_data(), "");
}

void ColorIOManager::append_builtin_CDL() {
    for (const ColorDecisionListDef& def : tavelion_color_decision_lists)
        if (def.name == s_default_CDL_name)
            return;
    ColorDecisionListDef builtin = make_identity_CDL();
    builtin.name = s_default_CDL_name;
    builtin.is_builtin = true;
    tavelion_color_decision_lists.append(builtin);
}

bool ColorIOManager::add_custom_CDLs_to_tavelion_config(const CoreVector<ColorDecisionListDef>& list) {
    CDLFileReader files(RepeatedIds::FIRST_COUNTS);
    if (cdl_config)
        for (const ColorDecisionListDef& def : list)
            add_custom_CDL(def, files);
    if (cdl_config && &list == &tavelion_color_decision_lists)
        added_cdls->note_list(list);
    return true;
}

void ColorIOManager::add_custom_CDL(const ColorDecisionListDef& def, CDLFileReader& files) {
    if (def.is_builtin)
        return;
    const bool from_file = !def.file.is_empty() && files.exists(def.file);
    if (added_cdls->holds(def, from_file))
        return;
    const bool added = log_ocio_errors(
        LOG_ERROR,
        [&] {
            try {
                const ocio::CDLTransformRcPtr transform =
                    from_file ? files.read(def.file, def.cccid) : make_CDL_transform(def);
                ocio::add_color_space(cdl_config, make_CDL_space(def.name, transform));
            } catch (const ocio::Exception&) {
                rethrow_about(def.name, diagnostics::Code::CDL_INVALID);
            }
        },
        [&] {
            log_message(LOG_ERROR, "Color Management: the custom CDL '", def.name,
                        "' has errors and was ignored.\n");
        });
    if (added)
        added_cdls->remember(def, from_file);
    else
        added_cdls->forget_list(); // One that failed is tried again with the whole list.
}

bool ColorIOManager::build_CDL_from_file(const CoreString& path) {
    if (!app)
        return false;
    if (!SysFilesystem::file_exists(path)) {
        report_unreadable(LOG_ERROR, diagnostics::Code::FILE_MISSING, CoreString(), path);
        return false;
    }
    XmlNode top;
    if (!parse_CDL_document(path, top))
        return false;
    const KnownCDLs known_before(tavelion_color_decision_lists);
    const int count = top.count_children("ColorCorrection");
    for (int i = 0; i < count; ++i) {
        const XmlNode correction = top.get_child(i);
        ColorDecisionListDef def = make_identity_CDL();
        def.file = path;
        def.name = get_correction_id(correction);
        def.cccid = def.name;
        if (!read_color_correction(correction, path, MissingElement::GIVE_UP, def))
            return false;
        // The list used to remove them comes first: it may name more records than there are, but not fewer.
        library_color_decision_lists.append(def);
        if (!known_before.contains(def))
            tavelion_color_decision_lists.append(def);
    }
    add_custom_CDLs_to_tavelion_config(tavelion_color_decision_lists);
    return false;
}

void ColorIOManager::update_file_cdl_library_path() {
    at_boundary(
        false, [this] { return read_CDL_library(); }, [this] { forget_added_CDLs(); });
}

bool ColorIOManager::read_CDL_library() {
    if (!app || app->get_cdl_library_file_path().is_empty())
        return false;
    forget_cached_files();
    remove_library_CDLs(library_color_decision_lists, tavelion_color_decision_lists);
    library_color_decision_lists.remove_all();
    clear_CDL_spaces();
    init_default_CDL_tavelion_config();
    build_CDL_from_file(app->get_cdl_library_file_path());
    update_CDL_enums_and_lists();
    return true;
}

void ColorIOManager::clear_CDL_spaces() {
    if (!cdl_config)
        return;
    ocio::clear_color_spaces(cdl_config);
    forget_added_CDLs();
}

void ColorIOManager::forget_cached_files() {
    ocio::clear_all_caches();
    begin_library_load();
    forget_added_CDLs();
}

void ColorIOManager::forget_added_CDLs() {
    if (added_cdls)
        *added_cdls = AddedCDLs();
}

bool ColorIOManager::add_local_CDL(ColorDecisionListDef entry) {
    return at_boundary(
        false, [&] { return add_unlisted_CDL(entry); }, [this] { forget_added_CDLs(); });
}

bool ColorIOManager::add_unlisted_CDL(const ColorDecisionListDef& entry) {
    if (cdl_config && added_cdls->is_complete(tavelion_color_decision_lists)) {
        CDLFileReader files(RepeatedIds::FIRST_COUNTS);
        if (const ColorDecisionListDef* listed = added_cdls->find_replaced(entry))
            add_custom_CDL(ColorDecisionListDef(*listed), files);
        add_custom_CDL(entry, files);
        return true;
    }
    CoreVector<ColorDecisionListDef> list = tavelion_color_decision_lists;
    ColorDecisionListDef* same_name =
        std::find_if(list.begin(), list.end(), [&](const auto& def) { return def.name == entry.name; });
    if (same_name != list.end())
        *same_name = entry;
    else
        list.append(entry);
    const bool added = add_custom_CDLs_to_tavelion_config(list);
    if (cdl_config)
        added_cdls->note_list(tavelion_color_decision_lists);
    return added;
}

void ColorIOManager::set_tavelion_config(const CoreVector<ColorDecisionListDef>& list) {
    at_boundary(
        false, [&] { return replace_CDLs(list); }, [this] { forget_added_CDLs(); });
}

bool ColorIOManager::replace_CDLs(const CoreVector<ColorDecisionListDef>& list) {
    {
        const PendingList records(tavelion_color_decision_lists, CoreVector<ColorDecisionListDef>(list));
        tavelion_color_decision_lists.remove_all();
        clear_CDL_spaces();
        init_default_CDL_tavelion_config();
        add_custom_CDLs_to_tavelion_config(records.get());
    }
    if (added_cdls)
        added_cdls->note_list(tavelion_color_decision_lists);
    update_CDL_enums_and_lists();
    return true;
}
