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

std::string get_name(const CLI::Option& option) {
    return option.get_name(option.get_positional());
}

/// The option that stands last and so without a value; null for none.
const CLI::Option* find_option_without_value(const CLI::App& command,
                                             const std::vector<std::string>& arguments) {
    const bool ends_in_option = !arguments.empty() && arguments.back().substr(0, 1) == "-";
    const CLI::Option* const last = ends_in_option ? command.get_option_no_throw(arguments.back()) : nullptr;
    return last && last->get_items_expected_min() > 0 ? last : nullptr;
}

std::string describe_value_count(const CLI::App& command, const std::vector<std::string>& arguments) {
    for (const CLI::Option* option : command.get_options())
        if (static_cast<int>(option->count()) > option->get_items_expected_max())
            return fmt::format("{} can be given only once", get_name(*option));
    const CLI::Option* const lone = find_option_without_value(command, arguments);
    return lone ? describe_missing_value(*lone) : "";
}

/// Two given options that exclude each other.
std::string describe_exclusion(const CLI::App& command) {
    for (const CLI::Option* option : command.get_options())
        for (const CLI::Option* other : option->get_excludes())
            if (option->count() > 0 && other->count() > 0)
                return fmt::format("{} and {} cannot be combined", get_name(*option), get_name(*other));
    return "";
}

/// A given option without another one that it needs.
std::string describe_need(const CLI::App& command) {
    for (const CLI::Option* option : command.get_options())
        for (const CLI::Option* needed : option->get_needs())
            if (option->count() > 0 && needed->count() == 0)
                return fmt::format("{} needs {}", get_name(*option), get_name(*needed));
    return "";
}

} // namespace

std::string describe_missing_value(const CLI::Option& option) {
    return fmt::format("{} needs a value", get_name(option));
}

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

std::string describe(const CLI::ParseError& error, const CLI::App& program,
                     const std::vector<std::string>& arguments) {
    const CLI::App& command = *get_named_commands(program).back();
    const std::vector<std::string> extra = program.remaining(true);
    std::string words;
    if (dynamic_cast<const CLI::ExtrasError*>(&error) && !extra.empty())
        words = fmt::format("unexpected argument '{}'", extra.front());
    else if (dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        words = describe_value_count(command, arguments);
    else if (dynamic_cast<const CLI::ExcludesError*>(&error))
        words = describe_exclusion(command);
    else if (dynamic_cast<const CLI::RequiresError*>(&error))
        words = describe_need(command);
    return words.empty() ? error.what() : words;
}

} // namespace tool
