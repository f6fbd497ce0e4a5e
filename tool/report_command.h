#pragma once

#include "tool/command.h"
#include "tool/json.h"

namespace tool {

/// A command that opens a session and shows a report: as text, or as JSON with --json.
class ReportCommand : public SessionCommand {
public:
    ExitCode run(Console& console) final;

protected:
    ReportCommand(Options& program, const char* name, const char* description, const char* examples,
                  workflow::PreferenceUse use = workflow::PreferenceUse::READ)
        : SessionCommand(program, name, description, examples), use(use) {}

    /// Reports what concerns the whole report before it is shown.
    virtual void report_problems(const workflow::Session& /*session*/, Console& /*console*/) const {}
    virtual void print(const workflow::Session& session, Console& console) const = 0;
    virtual Json to_json(const workflow::Session& session) const = 0;

private:
    const workflow::PreferenceUse use;
};

} // namespace tool
