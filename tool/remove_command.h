#pragma once

#include <optional>
#include <string>

#include "tool/command.h"
#include "tool/tool_session.h"

namespace tool {

/// "remove NAME": removes an entry from the preferences.
class RemoveCommand : public Command {
public:
    /// What is removed, and the texts of the help.
    struct Entry {
        const char* description;
        const char* argument;
        const char* argument_description;
        const char* examples;
        /// Removes the entry from the session. Throws diagnostics::Failure.
        void (*remove)(workflow::Session& session, const std::string& name);
        /// Hint for an entry that cannot be removed; may be empty.
        const char* hint_for_refusal = "";
        /// A warning to report after the removal; may be null.
        std::optional<diagnostics::Diagnostic> (*find_warning)(const workflow::Session& session) = nullptr;
    };

    RemoveCommand(Options& program, const Entry& entry);

    ExitCode run(Console& console) override;

private:
    const Entry entry;
    SessionChoice session_options;
    std::string name;
};

} // namespace tool
