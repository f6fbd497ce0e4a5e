#include "standalone/preference_marker.h"

#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "standalone/preference_fields.h"

namespace {

constexpr std::string_view MARKER_NAME = "file_type";
constexpr std::string_view MARKER_VALUE = "qb_colorio preferences";

// The value of a line "name: value" without blanks and quotes around it.
std::string_view get_line_value(std::string_view line, size_t name_size) {
    constexpr std::string_view AROUND = " \t\r\"'";
    const std::string_view value = line.substr(name_size + 1);
    const size_t begin = value.find_first_not_of(AROUND);
    return begin == value.npos ? std::string_view()
                               : value.substr(begin, value.find_last_not_of(AROUND) + 1 - begin);
}

bool has_module_entries(const ParserGroup& root) {
    const ParserEntry* const entry = root.find_entry(MODULE_ENTRY);
    const ParserGroup* const group = entry ? entry->get_group(0) : nullptr;
    for (unsigned int i = 0; group && i < group->get_entry_count(); ++i)
        if (is_module_entry(group->get_entry(i)->get_name()))
            return true;
    return false;
}

} // namespace

void add_preference_marker(ParserGroup& preferences) {
    preferences.add_entry(CoreString(MARKER_NAME), 0, 0)->add_string(CoreString(MARKER_VALUE));
}

bool is_preference_marker(std::string_view name) {
    return name == MARKER_NAME;
}

bool is_preferences(const ParserGroup& root) {
    if (const ParserEntry* const marker = root.find_entry(CoreString(MARKER_NAME)))
        return marker->get_string(0).view() == MARKER_VALUE;
    for (unsigned int i = 0; i < root.get_entry_count(); ++i)
        if (is_preference_field(root.get_entry(i)->get_name()))
            return true;
    return has_module_entries(root);
}

bool is_damaged_preferences(std::string_view text) {
    bool has_field = false;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(line.size() == text.size() ? line.size() : line.size() + 1);
        const size_t colon = line.find(':');
        if (colon == line.npos)
            continue;
        const std::string_view name = line.substr(0, colon);
        if (name == MARKER_NAME)
            return get_line_value(line, colon) == MARKER_VALUE;
        has_field = has_field || is_preference_field(CoreString(name));
    }
    return has_field;
}
