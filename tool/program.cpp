#include "tool/program.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <sstream>
#include <string_view>

#include <fmt/format.h>

#include "colorio/color_io_evaluation.h"
#include "tool/command.h"
#include "workflow/failure_reason.h"
#include "workflow/nearest_names.h"

namespace tool {

namespace {

constexpr char DESCRIPTION[] = "Colour management from the command line: shows what a configuration offers, "
                               "converts pictures, writes shaders, finds mistakes.";
constexpr char FOOTER[] = R"(
Examples:
  colorio list spaces
  colorio convert render.exr render.png --view Tavelion.sRGB
  colorio check --config show.ocio
  colorio cdl list grades.ccc

Environment:
  OCIO                 configuration file, where --config names none
  COLORIO_FAST_PATH=0  leaves every conversion to the colour library, for comparison
  COLORIO_READ_IN_PROCESS=1
                       read images in this process; a damaged image can then crash it

Exit codes: 0 done, 1 failed, 2 wrong usage. Results go to standard output, messages to standard error.
'colorio COMMAND --help' tells more about a command.)";

/// "0" in this variable switches the module's vector code off.
constexpr char FAST_PATH_VARIABLE[] = "COLORIO_FAST_PATH";

void follow_environment() {
    const char* wish = std::getenv(FAST_PATH_VARIABLE);
    ColorIOEvaluation::set_vector_code(!wish || std::string_view(wish) != "0");
}

/// Newer versions of CLI11 would break the lines of the examples anew, without their indents.
template <class Formatter>
auto keep_footers_as_they_are(Formatter& formatter, int)
    -> decltype(formatter.enable_footer_formatting(false)) {
    formatter.enable_footer_formatting(false);
}
template <class Formatter>
void keep_footers_as_they_are(Formatter&, long) {}

class Program {
public:
    Program() : app(DESCRIPTION, "colorio") {
        keep_footers_as_they_are(*app.get_formatter(), 0);
        app.footer(FOOTER);
        app.set_version_flag("--version", "colorio " COLORIO_VERSION);
        app.require_subcommand(1);
        for (const auto make :
             {make_list_command, make_convert_command, make_explain_command, make_shader_command,
              make_check_command, make_view_command, make_cdl_command, make_formats_command,
              make_space_command, make_prefs_command, make_legacy_command})
            commands.push_back(make(app));
    }

    ExitCode run(std::vector<std::string> arguments, Console& console) {
        try {
            check_command_name(arguments);
            for (const auto& command : commands)
                if (command->get_name() == arguments.front())
                    command->complete_arguments(arguments);
            app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        } catch (const CLI::Success& wish) { // help or version
            std::ostringstream text;
            app.exit(wish, text, text);
            const std::string lines = text.str();
            console.print(lines.substr(0, lines.find_last_not_of('\n') + 1));
            return EXIT_CODE_DONE;
        } catch (const CLI::ParseError& error) {
            check_option_names();
            throw UsageError(fmt::format("{}; see {} --help", error.what(), get_wanted_name()));
        }
        const auto wanted = std::find_if(commands.begin(), commands.end(),
                                         [](const auto& command) { return command->is_wanted(); });
        return (*wanted)->run(console);
    }

private:
    /// The parser would only say that a command is missing.
    void check_command_name(const std::vector<std::string>& arguments) const {
        if (arguments.empty())
            throw UsageError("no command given; see colorio --help");
        const std::string& name = arguments.front();
        std::vector<std::string> names;
        for (const CLI::App* command : app.get_subcommands({}))
            names.push_back(command->get_name());
        if (name.substr(0, 1) != "-" && std::find(names.begin(), names.end(), name) == names.end())
            throw UsageError(fmt::format("no command '{}'{}", name, did_you_mean(name, names)));
    }

    /// An option that the wanted command does not have says more about a mistake than what else is missing.
    void check_option_names() const {
        for (const std::string& argument : app.remaining(true)) {
            const std::string name = argument.substr(0, argument.find('='));
            if (name.size() > 2 && name.substr(0, 2) == "--")
                throw UsageError(fmt::format("no option '{}'{}; see {} --help", name,
                                             did_you_mean(name, get_option_names()), get_wanted_name()));
        }
    }

    std::vector<std::string> get_option_names() const {
        std::vector<std::string> names;
        for (const CLI::Option* option : get_wanted_app().get_options())
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
        return names;
    }

    /// The innermost command that the command line names.
    const CLI::App& get_wanted_app() const {
        const CLI::App* wanted = &app;
        while (!wanted->get_subcommands().empty())
            wanted = wanted->get_subcommands().front();
        return *wanted;
    }

    std::string get_wanted_name() const {
        std::string name = "colorio";
        for (const CLI::App* command = &app; !command->get_subcommands().empty();) {
            command = command->get_subcommands().front();
            name += " " + command->get_name();
        }
        return name;
    }

    CLI::App app;
    std::vector<std::unique_ptr<Command>> commands;
};

/// Calls `action` and shows what it throws.
template <class Action>
ExitCode report_errors(Console& console, const Action& action) {
    try {
        return action();
    } catch (const CommandError& error) {
        console.error(error.what());
        return error.get_code();
    } catch (const std::exception& error) {
        console.error(explain_exception(error));
    }
    return EXIT_CODE_FAILED;
}

} // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const ConsoleTraits& traits) {
    Console console(out, err, traits);
    const ExitCode code = report_errors(console, [&] {
        follow_environment();
        return Program().run(arguments, console);
    });
    const ExitCode output_code = report_errors(console, [&] {
        console.finish();
        return EXIT_CODE_DONE;
    });
    return code != EXIT_CODE_DONE ? code : output_code;
}

} // namespace tool
