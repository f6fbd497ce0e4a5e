#include "workflow/preference_values.h"

#include <filesystem>
#include <iterator>
#include <optional>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_candidate.h"
#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "standalone/standalone_app.h"
#include "workflow/cdl_library.h"
#include "workflow/config_source.h"
#include "workflow/mapping_location.h"
#include "workflow/nearest_names.h"

namespace workflow {

namespace {

using diagnostics::Code;

constexpr char USE_CONFIG[] = "use_color_space_file";
constexpr char USE_MAPPING[] = "use_color_space_by_extension_file";

/// What a path is for.
enum class Purpose { CONFIG, CDL_LIBRARY, MAPPING };

struct Switch {
    const char* name;
    void (*set)(StandaloneApp& app, bool is_on);
};

struct Path {
    const char* name;
    Purpose purpose;
    void (*set)(StandaloneApp& app, const CoreString& path);
    const Switch* user; ///< The switch that makes use of it; null where there is none.
};

const Switch SWITCHES[] = {
    {USE_CONFIG, [](StandaloneApp& app, bool is_on) { app.set_use_color_space_file(is_on); }},
    {USE_MAPPING,
     [](StandaloneApp& app, bool is_on) { app.set_use_color_space_by_extension_file(is_on ? 1 : 0); }},
};

const Path PATHS[] = {
    {"color_space_file_path", Purpose::CONFIG,
     [](StandaloneApp& app, const CoreString& path) { app.set_color_space_file_path(path); }, &SWITCHES[0]},
    {"cdl_library_file_path", Purpose::CDL_LIBRARY,
     [](StandaloneApp& app, const CoreString& path) { app.set_cdl_library_file_path(path); }, nullptr},
    {"color_space_by_extension_file_path", Purpose::MAPPING,
     [](StandaloneApp& app, const CoreString& path) { app.set_color_space_by_extension_file_path(path); },
     &SWITCHES[1]},
};

constexpr char DEFAULT_COLOR_SPACE[] = "default_color_space_name";

bool parse_switch(const std::string& name, const std::string& value) {
    for (const char* word : {"yes", "on", "true", "1"})
        if (value == word)
            return true;
    for (const char* word : {"no", "off", "false", "0"})
        if (value == word)
            return false;
    diagnostics::fail(Code::USAGE, fmt::format("invalid value '{}' for {}; use yes or no", value, name));
}

/// Why the module would not use the mapping file.
std::optional<diagnostics::Diagnostic> find_mapping_error(StandaloneApp& app, const std::string& path) {
    if (const auto opened = files::open_for_reading(path); !opened)
        return files::to_diagnostic(opened.get_failure());
    ColorIODiagnostics collector;
    if (ColorIOAutoDetection(&app).build_from_file(path.c_str()))
        return std::nullopt;
    const diagnostics::Diagnostics reports = collector.take();
    const diagnostics::Diagnostic* const worst = diagnostics::find_worst(reports);
    diagnostics::Diagnostic error =
        worst ? *worst : diagnostics::make_file_error(Code::MAPPING_MALFORMED, "it cannot be read", path);
    error.severity = diagnostics::Severity::ERROR;
    locate_in_mapping(error);
    return error;
}

std::optional<diagnostics::Diagnostic> find_path_error(StandaloneApp& app, Purpose purpose,
                                                       const std::string& path) {
    switch (purpose) {
    case Purpose::CONFIG:
        return ColorIOCandidate::check_config_file(path.c_str());
    case Purpose::CDL_LIBRARY:
        return check_cdl_library(path);
    case Purpose::MAPPING:
        break;
    }
    return find_mapping_error(app, path);
}

std::string make_absolute(const std::string& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error).lexically_normal();
    return path.empty() || is_in_library(path) || error ? path : absolute.string();
}

void set_path(StandaloneApp& app, const Path& path, const std::string& value,
              diagnostics::Diagnostics& notes) {
    const std::string absolute = make_absolute(value);
    if (!value.empty())
        if (auto error = find_path_error(app, path.purpose, absolute))
            throw diagnostics::Failure(*std::move(error));
    path.set(app, absolute.c_str());
    if (!path.user)
        return;
    path.user->set(app, !value.empty());
    notes.push_back(diagnostics::make_note(
        Code::PREFERENCE_CHANGED, fmt::format("{} is {}", path.user->name, value.empty() ? "no" : "yes"),
        path.user->name));
}

} // namespace

std::vector<PreferenceValue> get_preference_values(const StandaloneApp& app) {
    return {{USE_CONFIG, app.get_use_color_space_file()},
            {PATHS[0].name, app.get_color_space_file_path().get_data()},
            {PATHS[1].name, app.get_cdl_library_file_path().get_data()},
            {DEFAULT_COLOR_SPACE, app.get_default_color_space_name().get_data()},
            {USE_MAPPING, app.get_use_color_space_by_extension_file() != 0},
            {PATHS[2].name, app.get_color_space_by_extension_file_path().get_data()}};
}

std::string format_preference(const PreferenceValue& preference) {
    if (const bool* is_on = std::get_if<bool>(&preference.value))
        return *is_on ? "yes" : "no";
    return std::get<std::string>(preference.value);
}

void set_preference(StandaloneApp& app, const std::string& name, const std::string& value,
                    diagnostics::Diagnostics& notes) {
    for (const Switch& known : SWITCHES)
        if (name == known.name)
            return known.set(app, parse_switch(name, value));
    for (const Path& known : PATHS)
        if (name == known.name)
            return set_path(app, known, value, notes);
    if (name == DEFAULT_COLOR_SPACE)
        return app.set_default_color_space_name(value.c_str());
    std::vector<std::string> names;
    for (const PreferenceValue& known : get_preference_values(app))
        names.emplace_back(known.name);
    const std::string near = did_you_mean(name, names);
    diagnostics::fail(Code::USAGE, fmt::format("no preference '{}'", name),
                      near.empty() ? fmt::format("the preferences are {}", fmt::join(names, ", ")) : near);
}

} // namespace workflow
