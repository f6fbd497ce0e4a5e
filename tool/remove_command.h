#pragma once

#include <string>

#include "tool/command.h"
#include "tool/tool_session.h"

namespace tool {

/// "remove NAME": takes one of the user's own things out of the preferences and says that it is gone.
class RemoveCommand : public Command {
public:
    /// How the command speaks: of itself, of its argument, by examples.
    struct Words {
        const char* description;
        const char* argument;
        const char* argument_description;
        const char* examples;
    };

    RemoveCommand(Options& program, const Words& words);

    ExitCode run(Console& console) final;

protected:
    /// Removes it from the running module. Throws diagnostics::Failure when it cannot be removed.
    virtual void remove(const std::string& name) = 0;
    /// Says what else the user should know.
    virtual void add_notes(workflow::Session& session, Console& console);

private:
    SessionChoice session_options;
    std::string name;
};

} // namespace tool
