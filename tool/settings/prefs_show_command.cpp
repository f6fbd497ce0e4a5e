#include <filesystem>
#include <string>
#include <variant>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "standalone/standalone_app.h"
#include "tool/cdl/published_cdls.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/settings/prefs_command.h"
#include "tool/text_table.h"
#include "workflow/custom_spaces.h"
#include "workflow/format_associations.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio prefs show
  colorio prefs show --json --prefs show.yaml)";

/// One preference of the application, by its name in the file.
struct Preference {
    const char* name;
    std::variant<std::string, bool> value;
};

std::vector<Preference> get_preferences(const StandaloneApp& app) {
    return {{"use_color_space_file", app.get_use_color_space_file()},
            {"color_space_file_path", app.get_color_space_file_path().get_data()},
            {"cdl_library_file_path", app.get_cdl_library_file_path().get_data()},
            {"default_color_space_name", app.get_default_color_space_name().get_data()},
            {"use_color_space_by_extension_file", app.get_use_color_space_by_extension_file() != 0},
            {"color_space_by_extension_file_path", app.get_color_space_by_extension_file_path().get_data()}};
}

std::string to_text(const Preference& preference) {
    if (const bool* is_on = std::get_if<bool>(&preference.value))
        return *is_on ? "yes" : "no";
    return std::get<std::string>(preference.value);
}

class PrefsShowCommand : public Command {
public:
    explicit PrefsShowCommand(CLI::App& program)
        : Command(program, "show", "Show what the preference file holds", EXAMPLES) {
        add_preference_reading_options(*options, session_options);
        options->add_flag("--json", as_json, "Write JSON");
        session_options.builtin_only = true;
    }

    ExitCode run(Console& console) override {
        const ColorSession session(session_options, console, PreferenceUse::SHOW);
        if (as_json)
            print_json(session.get_preferences(), console);
        else
            print_tables(session.get_preferences(), console);
        return EXIT_CODE_DONE;
    }

private:
    static void print_tables(const UserPreferences& preferences, Console& console);
    static void print_json(const UserPreferences& preferences, Console& console);

    SessionOptions session_options;
    bool as_json = false;
};

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::string describe_file(const std::string& path) {
    if (path.empty())
        return "Without a preference file.";
    return exists(path) ? fmt::format("From {}.", path)
                        : fmt::format("There is no {} yet; this holds without it.", path);
}

void PrefsShowCommand::print_tables(const UserPreferences& preferences, Console& console) {
    console.print(describe_file(preferences.get_path()));
    console.print("");
    TextTable values({"preference", "value"});
    for (const Preference& preference : get_preferences(preferences.get_app()))
        values.add_row({preference.name, to_text(preference)});
    values.print(console);
    console.print("");
    TextTable formats({"category", "extensions", "colour space"});
    for (const FormatAssociation& association : get_format_associations())
        formats.add_row({association.category, fmt::format("{}", fmt::join(association.extensions, ", ")),
                         association.color_space});
    formats.print(console);
    console.print("");
    TextTable spaces({"colour space", "made of"});
    for (const auto& space : get_custom_spaces())
        spaces.add_row({space.name.get_data(), describe_origin(space)});
    spaces.print(console);
    console.print("");
    print_cdls(console);
}

void PrefsShowCommand::print_json(const UserPreferences& preferences, Console& console) {
    auto values = nlohmann::ordered_json::object();
    for (const Preference& preference : get_preferences(preferences.get_app()))
        std::visit([&](const auto& value) { values[preference.name] = value; }, preference.value);
    auto formats = nlohmann::ordered_json::array();
    for (const FormatAssociation& association : get_format_associations())
        formats.push_back({{"category", association.category},
                           {"extensions", association.extensions},
                           {"color_space", association.color_space}});
    auto spaces = nlohmann::ordered_json::array();
    for (const auto& space : get_custom_spaces())
        spaces.push_back({{"name", space.name.view()}, {"made_of", describe_origin(space)}});
    console.print(format_json({{"path", preferences.get_path()},
                               {"exists", exists(preferences.get_path())},
                               {"preferences", values},
                               {"formats", formats},
                               {"spaces", spaces},
                               {"cdls", cdls_to_json()}}));
}

} // namespace

std::unique_ptr<Command> make_prefs_show_command(CLI::App& program) {
    return std::make_unique<PrefsShowCommand>(program);
}

} // namespace tool
