#include "tool/parse_errors.h"

#include <algorithm>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "tool/exit_code.h"
#include "workflow/nearest_names.h"

namespace tool {

namespace {

/// The parsed commands, from the program to the innermost subcommand.
std::vector<const CLI::App*> get_named_commands(const CLI::App& program) {
    std::vector<const CLI::App*> named = {&program};
    while (!named.back()->get_subcommands().empty())
        named.push_back(named.back()->get_subcommands().front());
    return named;
}

/// "colorio cdl write".
std::string get_full_name(const CLI::App& program) {
    std::string name;
    for (const CLI::App* command : get_named_commands(program))
        name += (name.empty() ? "" : " ") + command->get_name();
    return name;
}

void add_option_names(const CLI::App& command, std::vector<std::string>& names) {
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
}

/// "did you mean '--config'?"; for an option of the program, which stands before the command, "did you mean
/// 'colorio --version'?". Empty when no option is near.
std::string suggest_option(const CLI::App& program, const std::string& name) {
    std::vector<std::string> own;
    add_option_names(*get_named_commands(program).back(), own);
    std::vector<std::string> all = own;
    add_option_names(program, all);
    const std::vector<std::string> near = workflow::find_nearest_names(name, all);
    if (!near.empty() && std::find(own.begin(), own.end(), near.front()) == own.end())
        return fmt::format("did you mean '{} {}'?", program.get_name(), near.front());
    return workflow::did_you_mean(name, own);
}

/// The option of the command that a message of the parser, "--from: ...", is about; null for none.
const CLI::Option* find_option_of(const CLI::ParseError& error, const CLI::App& command) {
    const std::string message = error.what();
    for (const CLI::Option* option : command.get_options())
        if (message.rfind(option->get_name(option->get_positional()) + ":", 0) == 0)
            return option;
    return nullptr;
}

/// Fills in the names of two options, which stand around `words` in a message of the parser.
std::string describe_pair(const std::string& message, const std::string& words, const char* format) {
    const std::size_t at = message.find(words);
    if (at == message.npos)
        return message;
    return fmt::format(fmt::runtime(format), message.substr(0, at), message.substr(at + words.size()));
}

} // namespace

std::string get_help_hint(const CLI::App& program) {
    return fmt::format("see {} --help", get_full_name(program));
}

void require_known_options(const CLI::App& program) {
    for (const std::string& argument : program.remaining(true)) {
        const std::string name = argument.substr(0, argument.find('='));
        if (name.size() <= 2 || name.substr(0, 2) != "--")
            continue;
        const std::string near = suggest_option(program, name);
        throw UsageError(fmt::format("unknown option '{}'", name),
                         near.empty() ? get_help_hint(program) : near);
    }
}

std::string describe(const CLI::ParseError& error, const CLI::App& program) {
    const CLI::App& command = *get_named_commands(program).back();
    const std::vector<std::string> extra = program.remaining(true);
    if (dynamic_cast<const CLI::ExtrasError*>(&error) && !extra.empty())
        return fmt::format("unexpected argument '{}'", extra.front());
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        if (const CLI::Option* option = find_option_of(error, command)) {
            const std::string name = option->get_name(option->get_positional());
            return static_cast<int>(option->count()) > option->get_items_expected_max()
                       ? fmt::format("{} can be given only once", name)
                       : fmt::format("{} needs a value", name);
        }
    if (dynamic_cast<const CLI::ExcludesError*>(&error))
        return describe_pair(error.what(), " excludes ", "{} and {} cannot be combined");
    if (dynamic_cast<const CLI::RequiresError*>(&error))
        return describe_pair(error.what(), " requires ", "{} needs {}");
    return error.what();
}

} // namespace tool
