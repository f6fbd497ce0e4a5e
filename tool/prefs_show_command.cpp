#include <filesystem>
#include <string>
#include <variant>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/correction_cells.h"
#include "tool/report_command.h"
#include "tool/text_table.h"
#include "workflow/custom_spaces.h"
#include "workflow/format_associations.h"
#include "workflow/preference_values.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio prefs show
  colorio prefs show --json --prefs show.yaml)";

class PrefsShowCommand : public ReportCommand {
public:
    explicit PrefsShowCommand(Options& program)
        : ReportCommand(program, "show", "Show the contents of the preferences file", EXAMPLES,
                        workflow::PreferenceUse::SHOW) {
        add_preference_reading_options(options, session_options);
        add_json_option();
        session_options.builtin_only = true;
    }

private:
    void print(const workflow::Session& session, Console& console) const override;
    Json to_json(const workflow::Session& session) const override;
};

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::string describe_file(const std::string& path) {
    if (path.empty())
        return "No preferences file; showing the defaults.";
    return exists(path) ? fmt::format("From {}.", path)
                        : fmt::format("{} does not exist; showing the defaults.", path);
}

void PrefsShowCommand::print(const workflow::Session& session, Console& console) const {
    const workflow::UserPreferences& preferences = session.get_preferences();
    console.print(describe_file(preferences.get_path()));
    console.print("");
    TextTable values({"preference", "value"});
    for (const workflow::PreferenceValue& preference : workflow::get_preference_values(preferences.get_app()))
        values.add_row({preference.name, workflow::format_preference(preference)});
    values.print(console);
    console.print("");
    TextTable formats({"category", "extensions", "color space"});
    for (const workflow::FormatAssociation& association : workflow::get_format_associations())
        formats.add_row({association.category, join(association.extensions), association.color_space});
    formats.print(console);
    console.print("");
    TextTable spaces({"color space", "made of"});
    for (const auto& space : workflow::get_custom_spaces())
        spaces.add_row({space.name.get_data(), workflow::describe_origin(space)});
    spaces.print(console);
    console.print("");
    print_cdls(console);
}

Json PrefsShowCommand::to_json(const workflow::Session& session) const {
    const workflow::UserPreferences& preferences = session.get_preferences();
    Json values = Json::object();
    for (const workflow::PreferenceValue& preference : workflow::get_preference_values(preferences.get_app()))
        std::visit([&](const auto& value) { values.set(preference.name, value); }, preference.value);
    Json formats = Json::array();
    for (const workflow::FormatAssociation& association : workflow::get_format_associations())
        formats.push({{"category", association.category},
                      {"extensions", association.extensions},
                      {"color_space", association.color_space}});
    Json spaces = Json::array();
    for (const auto& space : workflow::get_custom_spaces())
        spaces.push({{"name", space.name.view()}, {"made_of", workflow::describe_origin(space)}});
    return {{"path", preferences.get_path()},
            {"exists", exists(preferences.get_path())},
            {"preferences", values},
            {"formats", formats},
            {"spaces", spaces},
            {"cdls", cdls_to_json()}};
}

} // namespace

std::unique_ptr<Command> make_prefs_show_command(Options& program) {
    return std::make_unique<PrefsShowCommand>(program);
}

} // namespace tool
