#pragma once

#include <string>

#include "tool/command.h"
#include "tool/tool_session.h"

namespace tool {

/// "remove NAME": removes an entry from the preferences.
class RemoveCommand : public Command {
public:
    /// Texts of the help.
    struct Words {
        const char* description;
        const char* argument;
        const char* argument_description;
        const char* examples;
    };

    RemoveCommand(Options& program, const Words& words);

    ExitCode run(Console& console) final;

protected:
    /// Removes the entry from the running module, before the preferences are saved. Throws
    /// diagnostics::Failure when it cannot be removed.
    virtual void remove(const std::string& name) = 0;
    /// Reports notes after the removal.
    virtual void add_notes(workflow::Session& session, Console& console);

private:
    SessionChoice session_options;
    std::string name;
};

} // namespace tool
