#pragma once

#include <string>
#include <vector>

namespace manual {

/// An option or a positional argument of a command.
struct OptionDescription {
    std::vector<std::string> names; ///< "-d" and "--depth"; the name of a positional argument.
    std::string value;              ///< Of the help: "FILE", "{uint8,half}"; empty for flags.
    std::vector<std::string> choices;
    std::string help;
    bool is_positional = false;
    bool is_required = false;
    bool takes_value = false;
    bool is_repeatable = false;
};

/// A program, or one of its commands.
struct CommandDescription {
    std::string name;
    std::string description; ///< One line.
    std::string footer;      ///< Headings ("Examples:") with indented lines, and paragraphs.
    std::vector<OptionDescription> options;
    std::vector<CommandDescription> commands;
};

/// The command of that name; null for none.
inline const CommandDescription* find_command(const CommandDescription& parent, const std::string& name) {
    for (const CommandDescription& command : parent.commands)
        if (command.name == name)
            return &command;
    return nullptr;
}

} // namespace manual
