#include "tool/program.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string_view>

#include <fmt/format.h>

#include "colorio/color_io_evaluation.h"
#include "tool/command.h"
#include "tool/hidden_commands.h"
#include "tool/option_hints.h"
#include "tool/versions.h"
#include "workflow/nearest_names.h"

namespace tool {

namespace {

constexpr char DESCRIPTION[] =
    "Inspect and check OCIO configs, convert images, and write shaders and CDL files.";
constexpr char FOOTER[] = R"(
Examples:
  colorio list spaces
  colorio convert render.exr render.png --view Tavelion.sRGB
  colorio check --config show.ocio
  colorio cdl list grades.ccc

Environment:
  OCIO                 OCIO config to use without --config
  COLORIO_FAST_PATH=0  convert with OpenColorIO instead of SIMD code, for comparison
  COLORIO_READ_IN_PROCESS=1
                       read images in this process; a damaged image can then crash it

Exit codes: 0 done, 1 failed, 2 invalid command line.
Results go to standard output, messages to standard error.
'colorio COMMAND --help' shows the options and examples of a command.)";

/// Accepted anywhere in the command line; `run` handles it.
constexpr char JSON_DIAGNOSTICS[] = "--json-diagnostics";

/// "0" in this environment variable disables the module's SIMD code.
constexpr char FAST_PATH_VARIABLE[] = "COLORIO_FAST_PATH";

void follow_environment() {
    const char* wish = std::getenv(FAST_PATH_VARIABLE);
    ColorIOEvaluation::set_vector_code(!wish || std::string_view(wish) != "0");
}

class Program {
public:
    Program() : options(DESCRIPTION, "colorio") {
        options.set_footer(FOOTER);
        options.set_version(format_versions());
        options.add_flag(JSON_DIAGNOSTICS, writes_json,
                         "write errors, warnings and notes as JSON, one object per line");
        options.require_command();
        for (const auto make : {make_list_command, make_convert_command, make_explain_command,
                                make_bake_command, make_shader_command, make_check_command, make_view_command,
                                make_cdl_command, make_formats_command, make_space_command,
                                make_prefs_command, make_legacy_command, make_doctor_command})
            commands.push_back(make(options));
    }

    ExitCode run(std::vector<std::string> arguments, Console& console) {
        if (run_hidden_command(arguments, options, console))
            return EXIT_CODE_DONE;
        check_command_name(arguments);
        for (const auto& command : commands)
            if (command->get_name() == arguments.front())
                command->complete_arguments(arguments);
        if (const std::optional<std::string> answer = options.parse(arguments)) {
            console.print_text(*answer);
            return EXIT_CODE_DONE;
        }
        const auto wanted = std::find_if(commands.begin(), commands.end(),
                                         [](const auto& command) { return command->is_wanted(); });
        return (*wanted)->run(console);
    }

private:
    /// Throws UsageError with the nearest names; the parser only reports a missing command.
    void check_command_name(const std::vector<std::string>& arguments) const {
        if (arguments.empty())
            throw UsageError("no command given", "see colorio --help");
        const std::string& name = arguments.front();
        const std::vector<std::string> names = options.get_command_names();
        if (name.substr(0, 1) != "-" && std::find(names.begin(), names.end(), name) == names.end())
            throw UsageError(fmt::format("unknown command '{}'", name), workflow::did_you_mean(name, names));
    }

    Options options;
    bool writes_json = false;
    std::vector<std::unique_ptr<Command>> commands;
};

/// Calls `action` and shows what it throws.
template <class Action>
ExitCode report_errors(Console& console, const Action& action) {
    try {
        return action();
    } catch (const diagnostics::Failure& failure) {
        console.report(describe_with_options(failure));
        return get_exit_code(failure);
    } catch (const std::exception& error) {
        console.report(diagnostics::describe(error));
    }
    return EXIT_CODE_FAILED;
}

} // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const ConsoleTraits& traits) {
    Console console(out, err, traits);
    // Removed before parsing, so that it also applies to invalid command lines.
    std::vector<std::string> words = arguments;
    words.erase(std::remove(words.begin(), words.end(), JSON_DIAGNOSTICS), words.end());
    console.set_json_diagnostics(words.size() < arguments.size());
    const ExitCode code = report_errors(console, [&] {
        follow_environment();
        return Program().run(words, console);
    });
    const ExitCode output_code = report_errors(console, [&] {
        console.finish();
        return EXIT_CODE_DONE;
    });
    return code != EXIT_CODE_DONE ? code : output_code;
}

} // namespace tool
