#pragma once

#include <string>
#include <vector>

#include "tool/command.h"

namespace tool {

/// A command that consists of subcommands: "colorio cdl list", "colorio cdl write".
class CommandGroup : public Command {
public:
    using MakeCommand = std::unique_ptr<Command> (*)(Options& program);

    /// `default_part`, when it is not empty, names the subcommand that runs when the user gives none.
    CommandGroup(Options& program, const char* name, const char* description, const char* examples,
                 const std::vector<MakeCommand>& make_parts, std::string default_part = "");

    ExitCode run(Console& console) override;
    void complete_arguments(std::vector<std::string>& arguments) const override;

private:
    std::vector<std::unique_ptr<Command>> parts;
    const std::string default_part;
};

} // namespace tool
