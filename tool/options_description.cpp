#include <CLI/CLI.hpp>

#include "tool/options.h"

namespace tool {

namespace {

/// "{a,b}" as a and b.
std::vector<std::string> split_choices(const std::string& value) {
    std::vector<std::string> choices;
    if (value.size() > 2 && value.front() == '{')
        choices = CLI::detail::split(value.substr(1, value.size() - 2), ',');
    return choices;
}

manual::OptionDescription describe(const CLI::App& command, const CLI::Option& option) {
    manual::OptionDescription description;
    description.is_positional = option.get_positional();
    for (const std::string& name : option.get_snames())
        description.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        description.names.push_back("--" + name);
    if (description.names.empty())
        description.names.push_back(option.get_name(true));
    description.takes_value = option.get_type_size() != 0;
    description.value = option.get_option_text();
    if (description.takes_value && description.value.empty() && !description.is_positional)
        description.value = command.get_formatter()->get_label(option.get_type_name());
    description.choices = split_choices(description.value);
    description.help = option.get_description();
    description.is_required = option.get_required();
    description.is_repeatable = option.get_items_expected_max() > 1;
    return description;
}

manual::CommandDescription describe(const CLI::App& command) {
    manual::CommandDescription description{
        command.get_name(), command.get_description(), command.get_footer(), {}, {}};
    for (const CLI::Option* option : command.get_options())
        description.options.push_back(describe(command, *option));
    for (const CLI::App* part : command.get_subcommands({}))
        description.commands.push_back(describe(*part));
    return description;
}

} // namespace

manual::CommandDescription Options::get_description() const {
    return describe(*app);
}

} // namespace tool
