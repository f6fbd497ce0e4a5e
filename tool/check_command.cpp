#include "tool/command.h"

#include <algorithm>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/option_hints.h"
#include "workflow/config_check.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio check --config show.ocio
  OCIO=/shows/a/config.ocio colorio check --json)";

auto count_errors(const diagnostics::Diagnostics& messages) {
    return std::count_if(messages.begin(), messages.end(), [](const diagnostics::Diagnostic& message) {
        return message.severity == diagnostics::Severity::ERROR;
    });
}

void print_report(const workflow::ConfigFindings& findings, Console& console) {
    const workflow::CheckReport& report = findings.report;
    for (const workflow::CheckFailure& failure : report.failures)
        console.print(fmt::format("  failed: {}", describe(failure)));
    for (const workflow::CheckFailure& note : report.notes)
        console.print(fmt::format("  note: {}", describe(note)));
    for (const std::string& line : summarize(report))
        console.print(line);
    if (const auto errors = count_errors(findings.messages); errors > 0)
        console.print(fmt::format("Errors while loading: {}.", errors));
}

/// What was reported when the config was loaded, as part of the results.
void print_messages(const workflow::ConfigFindings& findings, Console& console) {
    for (const auto& [message, times] : count_repeated(findings.messages))
        console.print(fmt::format("  {}: {}{}", get_name(message.severity), format_located(message),
                                  times > 1 ? fmt::format(" ({} times)", times) : ""));
    if (!findings.refusal)
        return;
    console.print(fmt::format("error: {}", format_located(*findings.refusal)));
    if (!findings.refusal->hint.empty())
        console.print(fmt::format("hint: {}", findings.refusal->hint));
}

/// The same as diagnostics in JSON.
void report_messages(const workflow::ConfigFindings& findings, Console& console) {
    for (const auto& [message, times] : count_repeated(findings.messages))
        console.report(message);
    if (findings.refusal)
        console.report(*findings.refusal);
    for (const workflow::CheckFailure& failure : findings.report.failures)
        console.report(failure.reason);
}

void print_findings(const workflow::ConfigFindings& findings, Console& console) {
    console.print_heading(fmt::format("Config: {}", tool::describe(findings.source)));
    if (console.writes_json_diagnostics())
        report_messages(findings, console);
    else
        print_messages(findings, console);
    if (!findings.refusal)
        print_report(findings, console);
}

Json failures_to_json(const std::vector<workflow::CheckFailure>& failures) {
    Json list = Json::array();
    for (const workflow::CheckFailure& failure : failures)
        list.push({{"what", get_name(failure.subject)},
                   {"name", failure.name},
                   {"directions", failure.directions},
                   {"path", failure.path},
                   {"reason", to_json(failure.reason)}});
    return list;
}

Json findings_to_json(const workflow::ConfigFindings& findings) {
    Json answer = {{"config", to_json(findings.source)},
                   {"ok", findings.is_good()},
                   {"loaded", !findings.refusal.has_value()}};
    if (findings.refusal) {
        answer.set("reason", to_json(*findings.refusal));
    } else {
        answer.set("scene_linear", findings.report.scene_linear);
        for (const workflow::CheckCount& number : workflow::get_check_counts())
            answer.set(number.name, findings.report.*number.count);
        answer.set("failures", failures_to_json(findings.report.failures));
        answer.set("notes", failures_to_json(findings.report.notes));
    }
    Json messages = Json::array();
    for (const auto& [message, times] : count_repeated(findings.messages))
        messages.push(to_json(message).set("count", times));
    return answer.set("messages", messages);
}

class CheckCommand : public SessionCommand {
public:
    explicit CheckCommand(Options& program)
        : SessionCommand(program, "check",
                         "Check that every color space, view and look of an OCIO config works", EXAMPLES) {
        add_session_options();
        add_json_option();
    }

    ExitCode run(Console& console) override {
        workflow::ConfigFindings findings = workflow::examine_config(session_options);
        if (findings.refusal)
            findings.refusal = add_config_hint(*findings.refusal, findings.source);
        if (as_json)
            console.print_text(findings_to_json(findings).format());
        else
            print_findings(findings, console);
        return findings.is_good() ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
    }
};

} // namespace

const MakeCommand make_check_command = make_command<CheckCommand>;

} // namespace tool
