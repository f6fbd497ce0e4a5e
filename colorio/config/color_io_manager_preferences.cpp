#include "colorio/color_io_manager.h"
#include "colorio/facade/config_loads.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/types.h"
#include "host/of/of_app.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"

namespace {

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;
using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

constexpr char SPACE_ENTRY[] = "space";
constexpr char CDL_ENTRY[] = "CDL";
constexpr unsigned int CDL_VALUE_COUNT = 13;

template <class Records>
bool has_custom_record(const Records& records) {
    for (const auto& record : records)
        if (!record.is_builtin)
            return true;
    return false;
}

template <unsigned int N>
void add_doubles(ParserEntry& entry, const float (&values)[N]) {
    for (const float value : values)
        entry.add_double(value);
}

template <unsigned int N>
void get_doubles(const ParserEntry& entry, unsigned int first, float (&values)[N]) {
    for (unsigned int i = 0; i < N; ++i)
        values[i] = static_cast<float>(entry.get_double(first + i));
}

/// The string at a position; empty when the value is missing or of another type.
CoreString get_optional_string(const ParserEntry& entry, unsigned int index) {
    return entry.get_value_count() > index && entry.is_value_string(index) ? entry.get_string(index)
                                                                           : CoreString();
}

void write_record(ParserGroup& group, const ColorSpaceDef& def) {
    ParserEntry& entry = *group.add_entry(SPACE_ENTRY, 0, 0);
    entry.add_string(def.name);
    entry.add_string(def.lut_file);
    entry.add_int(static_cast<int>(def.bit_depth));
    entry.add_int(static_cast<int>(def.allocation));
    add_doubles(entry, def.allocation_vars);
    entry.add_string(def.cdl_file);
    entry.add_string(def.cccid);
}

void write_record(ParserGroup& group, const ColorDecisionListDef& def) {
    ParserEntry& entry = *group.add_entry(CDL_ENTRY, 0, 0);
    entry.add_string(def.name);
    entry.add_string(def.file);
    entry.add_string(def.cccid);
    add_doubles(entry, def.slope);
    add_doubles(entry, def.offset);
    add_doubles(entry, def.power);
    entry.add_double(def.saturation);
}

template <class Records>
void write_records(ParserGroup& group, const Records& records) {
    for (const auto& record : records)
        if (!record.is_builtin)
            write_record(group, record);
}

ColorSpaceDef read_color_space(const ParserEntry& entry) {
    ColorSpaceDef def{};
    def.name = entry.get_string(0);
    def.lut_file = entry.get_string(1);
    def.bit_depth = static_cast<unsigned int>(entry.get_int(2));
    def.allocation = static_cast<unsigned int>(entry.get_int(3));
    get_doubles(entry, 4, def.allocation_vars);
    def.cdl_file = get_optional_string(entry, 7);
    def.cccid = get_optional_string(entry, 8);
    return def;
}

ColorDecisionListDef read_CDL(const ParserEntry& entry) {
    ColorDecisionListDef def{};
    def.name = entry.get_string(0);
    def.file = entry.get_string(1);
    def.cccid = entry.get_string(2);
    get_doubles(entry, 3, def.slope);
    get_doubles(entry, 6, def.offset);
    get_doubles(entry, 9, def.power);
    def.saturation = static_cast<float>(entry.get_double(12));
    return def;
}

} // namespace

bool ColorIOManager::save_config(ParserEntry* entry) {
    return entry && at_boundary(false, [&] { return write_custom_records(*entry); });
}

bool ColorIOManager::write_custom_records(ParserEntry& entry) const {
    entry.reset();
    if (!has_custom_record(tavelion_color_spaces) && !has_custom_record(tavelion_color_decision_lists))
        return false;
    ParserGroup& group = entry.is_group() ? *entry.get_group(0) : *entry.add_group(nullptr);
    write_records(group, tavelion_color_spaces);
    write_records(group, tavelion_color_decision_lists);
    return true;
}

bool ColorIOManager::load_config(ParserEntry* entry) {
    return at_boundary(
        false, [&] { return read_preferences(entry); }, [this] { forget_added_CDLs(); });
}

bool ColorIOManager::read_preferences(const ParserEntry* entry) {
    if (entry && entry->get_value_count() > 0 && entry->is_value_group(0))
        read_records(*entry->get_group(0));
    const ReloadScope reload(config_loads);
    forget_cached_files();
    add_custom_luts_to_tavelion_config(tavelion_color_spaces);
    add_custom_CDLs_to_tavelion_config(tavelion_color_decision_lists);

    const bool loaded =
        app_uses_file_config() && build_from_file(CoreString(app->get_color_space_file_path()));
    config = loaded ? get_file_config_or_builtin() : tavelion_config;
    announce_new_lists(update_enums_and_lists());
    update_CDL_enums_and_lists();
    return loaded;
}

void ColorIOManager::read_records(const ParserGroup& group) {
    for (unsigned int i = 0; i < group.get_entry_count(); ++i) {
        const ParserEntry& entry = *group.get_entry(i);
        const unsigned int count = entry.get_value_count();
        if (count == 0 || !entry.is_value_string(0))
            continue;
        if (entry.get_name() == SPACE_ENTRY)
            tavelion_color_spaces.append(read_color_space(entry));
        else if (entry.get_name() == CDL_ENTRY && count == CDL_VALUE_COUNT)
            tavelion_color_decision_lists.append(read_CDL(entry));
    }
}
