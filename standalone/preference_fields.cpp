#include "standalone/preference_fields.h"

#include <algorithm>
#include <array>
#include <limits>

#include "diagnostics/failure.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "standalone/log_message.h"
#include "standalone/standalone_app.h"

namespace {

struct TextField {
    const char* name;
    const CoreString& (OfApp::*get)() const;
    void (StandaloneApp::*set)(const CoreString&);
};

struct SwitchField {
    const char* name;
    unsigned int (*get)(const StandaloneApp& app);
    void (*set)(StandaloneApp& app, unsigned int value);
};

constexpr std::array<std::string_view, 3> MODULE_ENTRIES{"space", "CDL", "extension"};

constexpr unsigned int LARGEST_SWITCH = std::numeric_limits<int>::max();

constexpr std::array<TextField, 4> TEXT_FIELDS{{
    {"color_space_file_path", &OfApp::get_color_space_file_path, &StandaloneApp::set_color_space_file_path},
    {"cdl_library_file_path", &OfApp::get_cdl_library_file_path, &StandaloneApp::set_cdl_library_file_path},
    {"default_color_space_name", &OfApp::get_default_color_space_name,
     &StandaloneApp::set_default_color_space_name},
    {"color_space_by_extension_file_path", &OfApp::get_color_space_by_extension_file_path,
     &StandaloneApp::set_color_space_by_extension_file_path},
}};

// After the texts, so that a switch that comes on finds the path it needs.
constexpr std::array<SwitchField, 2> SWITCH_FIELDS{{
    {"use_color_space_file",
     [](const StandaloneApp& app) -> unsigned int { return app.get_use_color_space_file(); },
     [](StandaloneApp& app, unsigned int value) { app.set_use_color_space_file(value != 0); }},
    {"use_color_space_by_extension_file",
     [](const StandaloneApp& app) { return app.get_use_color_space_by_extension_file(); },
     [](StandaloneApp& app, unsigned int value) { app.set_use_color_space_by_extension_file(value); }},
}};

template <class Fields>
bool has_field(const Fields& fields, const CoreString& name) {
    return std::any_of(fields.begin(), fields.end(), [&](const auto& field) { return name == field.name; });
}

bool load(const TextField& field, const ParserEntry& entry, StandaloneApp& app) {
    if (entry.get_value_count() != 1 || entry.is_group())
        return false;
    (app.*field.set)(entry.get_string(0));
    return true;
}

// Accepts the words true and false too, which people write.
bool load(const SwitchField& field, const ParserEntry& entry, StandaloneApp& app) {
    const CoreString text = entry.get_string(0).get_lower_case();
    if (entry.get_value_count() != 1)
        return false;
    if (entry.is_value_int(0) && entry.get_int(0) >= 0)
        field.set(app, static_cast<unsigned int>(entry.get_int(0)));
    else if (text == "true" || text == "false")
        field.set(app, text == "true");
    else
        return false;
    return true;
}

template <class Fields>
void load_all(const Fields& fields, const ParserGroup& group, const CoreString& path, StandaloneApp& app,
              diagnostics::Diagnostics& warnings) {
    for (const auto& field : fields) {
        const ParserEntry* const entry = group.find_entry(field.name);
        if (!entry || load(field, *entry, app))
            continue;
        diagnostics::Diagnostic warning = diagnostics::make_warning(
            diagnostics::Code::PREFERENCES_INVALID,
            "the value of '" + std::string(field.name) + "' is invalid and ignored", field.name);
        warning.file = path.get_data();
        warning.line = static_cast<unsigned int>(entry->get_line());
        log_message(LOG_WARNING, format_located(warning).c_str(), ".\n");
        warnings.push_back(std::move(warning));
    }
}

} // namespace

bool is_module_entry(const CoreString& name) {
    return std::find(MODULE_ENTRIES.begin(), MODULE_ENTRIES.end(), name.view()) != MODULE_ENTRIES.end();
}

bool is_preference_field(const CoreString& name) {
    return has_field(TEXT_FIELDS, name) || has_field(SWITCH_FIELDS, name);
}

void load_preference_fields(const ParserGroup& group, const CoreString& path, StandaloneApp& app,
                            diagnostics::Diagnostics& warnings) {
    load_all(TEXT_FIELDS, group, path, app, warnings);
    load_all(SWITCH_FIELDS, group, path, app, warnings);
}

void save_preference_fields(const StandaloneApp& app, ParserGroup& group) {
    for (const TextField& field : TEXT_FIELDS)
        group.add_entry(field.name, 0, 0)->add_string((app.*field.get)());
    for (const SwitchField& field : SWITCH_FIELDS)
        group.add_entry(field.name, 0, 0)
            ->add_int(static_cast<int>(std::min(field.get(app), LARGEST_SWITCH)));
}
