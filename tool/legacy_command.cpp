#include <string>

#include "colorio/color_io.h"
#include "tool/command.h"
#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/text_table.h"
#include "tool/tool_session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio legacy linear
  colorio legacy "Default|sRGB" --json)";

/// The current equivalents of a color space name saved by an earlier version; empty where there is none.
struct LegacyAnswers {
    explicit LegacyAnswers(const std::string& name)
        : is_legacy(ColorIO::is_legacy_builtin_color_space(CoreString(name.c_str()))),
          color_space(ColorIO::convert_legacy_builtin_color_space(CoreString(name.c_str())).get_data()),
          view_of_preferences(ColorIO::convert_legacy_preferences_display_color_space_to_display_view(
                                  CoreString(name.c_str()))
                                  .get_data()),
          view_of_widget(
              ColorIO::convert_legacy_widget_display_color_space_to_display_view(CoreString(name.c_str()))
                  .get_data()) {}

    bool is_legacy;
    std::string color_space;
    std::string view_of_preferences;
    std::string view_of_widget;
};

std::string or_none(const std::string& text) {
    return text.empty() ? "(none)" : text;
}

class LegacyCommand : public Command {
public:
    explicit LegacyCommand(Options& program)
        : Command(program, "legacy",
                  "Show the current equivalent of a color space name saved by an earlier version", EXAMPLES) {
        options.add("name", name, "saved name of a color space").required();
        add_session_options(options, session_options);
        options.add_flag("--json", as_json, "print JSON");
    }

    ExitCode run(Console& console) override {
        const ToolSession session(session_options, console);
        const LegacyAnswers answers(name);
        if (as_json)
            print_json(answers, console);
        else
            print_table(answers, console);
        return EXIT_CODE_DONE;
    }

private:
    void print_table(const LegacyAnswers& answers, Console& console) const {
        TextTable table({name, ""});
        table.add_row({"former built-in color space", answers.is_legacy ? "yes" : "no"});
        table.add_row({"as a color space", or_none(answers.color_space)});
        table.add_row({"as a display of the preferences", or_none(answers.view_of_preferences)});
        table.add_row({"as a display of a widget", or_none(answers.view_of_widget)});
        table.print(console);
    }

    void print_json(const LegacyAnswers& answers, Console& console) const {
        console.print_text(Json({{"name", name},
                                 {"legacy", answers.is_legacy},
                                 {"color_space", answers.color_space},
                                 {"preferences_view", answers.view_of_preferences},
                                 {"widget_view", answers.view_of_widget}})
                               .format());
    }

    SessionChoice session_options;
    std::string name;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_legacy_command(Options& program) {
    return std::make_unique<LegacyCommand>(program);
}

} // namespace tool
