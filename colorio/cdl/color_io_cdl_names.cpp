#include <string>
#include <unordered_set>

#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/names/label_list.h"
#include "colorio/names/menu_sleep.h"
#include "colorio/ocio/config.h"
#include "host/event/event_ids.h"

namespace {

void log_duplicate_CDL(const CoreString& name) {
    log_message(LOG_WARNING, "Color Management: duplicate CDL '", name,
                "' is already defined in the current configuration.\n");
    report(LOG_WARNING, diagnostics::Code::NAME_DUPLICATE, name,
           "the CDL '" + std::string(name.view()) + "' is already defined");
}

/// The CDL config has one color space per name; replaced ones are visible only in the list. Records without a
/// color space, intentionally or after an error, replaced none.
void log_replaced_names(const CoreVector<ColorIOManager::ColorDecisionListDef>& list,
                        const LabelList& published) {
    std::unordered_set<std::string> known;
    for (const ColorIOManager::ColorDecisionListDef& def : list)
        if (!def.is_builtin && published.holds(def.name) && !known.emplace(def.name.view()).second)
            log_duplicate_CDL(def.name);
}

} // namespace

void ColorIOManager::update_CDL_enums_and_lists() {
    if (!app) {
        CDL_names.remove_all();
        return;
    }
    if (!cdl_config || !color_decision_list_enum)
        return;
    publish_CDLs();
    raise_module_event(EVT_ID_COLORIO_MANAGER_CDL_LIST_CHANGED);
}

void ColorIOManager::publish_CDLs() {
    OfEnum& menu = *color_decision_list_enum;
    const MenuSleep sleep({&menu});
    CDL_names.remove_all();
    menu.remove_all_values();
    LabelList labels;
    const int count = ocio::get_num_color_spaces(cdl_config);
    for (int i = 0; i < count; ++i) {
        const CoreString name = ocio::get_color_space_name_by_index(cdl_config, i);
        if (labels.is_new(name, menu)) {
            CDL_names.append(name);
            labels.append(name, CDL_names.get_count() - 1);
        } else {
            log_duplicate_CDL(name);
        }
    }
    log_replaced_names(tavelion_color_decision_lists, labels);
    menu.add_values(labels.labels, labels.values);
}

unsigned int ColorIOManager::get_CDL_index(CoreString name) const {
    if (!app || !color_decision_list_enum)
        return NOT_FOUND;
    return at_boundary(NOT_FOUND, [&] {
        const unsigned int index = color_decision_list_enum->find_label_index(name);
        return index < color_decision_list_enum->get_value_count() ? index : NOT_FOUND;
    });
}

CoreString ColorIOManager::get_CDL_name(unsigned int index) const {
    if (!app || !color_decision_list_enum || index >= color_decision_list_enum->get_value_count())
        return CoreString();
    return at_boundary(CoreString(), [&] { return color_decision_list_enum->get_label(index); });
}
