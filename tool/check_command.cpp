#include "tool/command.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/option_hints.h"
#include "tool/text_table.h"
#include "tool/tool_session.h"
#include "workflow/config_check.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio check --config show.ocio
  OCIO=/shows/a/config.ocio colorio check --json)";

/// In text and in JSON.
const char* get_name(workflow::CheckFailure::Subject subject) {
    switch (subject) {
    case workflow::CheckFailure::VIEW:
        return "view";
    case workflow::CheckFailure::NAMED_TRANSFORM:
        return "named transform";
    case workflow::CheckFailure::INACTIVE_COLOR_SPACE:
        return "inactive color space";
    case workflow::CheckFailure::LOOK:
        return "look";
    case workflow::CheckFailure::VIEW_TRANSFORM:
        return "view transform";
    case workflow::CheckFailure::COLOR_SPACE:
        break;
    }
    return "color space";
}

std::string describe(const workflow::CheckFailure& failure) {
    std::string subject = fmt::format("{} '{}'", get_name(failure.subject), failure.name);
    if (!failure.directions.empty())
        subject += ", " + join(failure.directions, " and ");
    if (!failure.path.empty())
        subject += ", through " + failure.path;
    const std::string hint = failure.reason.hint.empty() ? "" : "; " + failure.reason.hint;
    return fmt::format("{}: {}{}", subject, format_located(failure.reason), hint);
}

std::string format_count(std::size_t count) {
    return count == 0 ? "none" : std::to_string(count);
}

/// Prints "Views: 5 with a view transform, 2 with looks."; nothing when `counts` is empty.
void print_counts(const char* start, const std::vector<std::string>& counts, const std::string& end,
                  Console& console) {
    if (!counts.empty())
        console.print(fmt::format("{}: {}.{}", start, join(counts), end));
}

void print_views_in_detail(const workflow::CheckReport& report, Console& console) {
    std::vector<std::string> counts;
    for (const auto& [count, words] : {std::pair(report.views_with_view_transform, "with a view transform"),
                                       {report.views_with_looks, "with looks"},
                                       {report.views_with_named_transform, "showing a named transform"}})
        if (count > 0)
            counts.push_back(fmt::format("{} {}", count, words));
    print_counts("Views", counts, "", console);
}

void print_other_trials(const workflow::CheckReport& report, Console& console) {
    std::vector<std::string> counts;
    for (const auto& [count, thing] : {std::pair(report.named_transforms_tried, "named transform"),
                                       {report.inactive_spaces_tried, "inactive color space"},
                                       {report.looks_tried, "look"},
                                       {report.view_transforms_tried, "view transform"}})
        if (count > 0)
            counts.push_back(count_things(count, thing));
    print_counts("Also tried", counts, fmt::format(" Notes: {}.", format_count(report.notes.size())),
                 console);
}

void print_report(const workflow::CheckReport& report, Console& console) {
    for (const workflow::CheckFailure& failure : report.failures)
        console.print(fmt::format("  failed: {}", describe(failure)));
    for (const workflow::CheckFailure& note : report.notes)
        console.print(fmt::format("  note: {}", describe(note)));
    console.print(fmt::format("Color spaces tried to and from '{}': {}. Views tried: {}. Failures: {}.",
                              report.scene_linear, report.spaces_tried, report.views_tried,
                              format_count(report.failures.size())));
    print_views_in_detail(report, console);
    print_other_trials(report, console);
}

/// Each different diagnostic once, in the order of first occurrence, with its count.
std::vector<std::pair<diagnostics::Diagnostic, unsigned int>>
count(const diagnostics::Diagnostics& messages) {
    std::vector<std::pair<diagnostics::Diagnostic, unsigned int>> counted;
    for (const diagnostics::Diagnostic& message : messages) {
        const auto known = std::find_if(counted.begin(), counted.end(),
                                        [&](const auto& candidate) { return candidate.first == message; });
        if (known == counted.end())
            counted.emplace_back(message, 1);
        else
            ++known->second;
    }
    return counted;
}

void print_messages(const diagnostics::Diagnostics& messages, Console& console) {
    for (const auto& [message, times] : count(messages))
        console.print(fmt::format("  {}: {}{}", get_name(message.severity), format_located(message),
                                  times > 1 ? fmt::format(" ({} times)", times) : ""));
}

void print_text(const workflow::ConfigFindings& findings, Console& console) {
    console.print_heading(fmt::format("Config: {}", tool::describe(findings.source)));
    print_messages(findings.messages, console);
    if (findings.refusal) {
        console.print(fmt::format("error: {}", findings.refusal->message));
        if (!findings.refusal->hint.empty())
            console.print(fmt::format("hint: {}", findings.refusal->hint));
        return;
    }
    print_report(findings.report, console);
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

void add_to_json(const workflow::CheckReport& report, Json& answer) {
    answer.set("scene_linear", report.scene_linear);
    answer.set("spaces_tried", report.spaces_tried);
    answer.set("views_tried", report.views_tried);
    answer.set("views_with_view_transform", report.views_with_view_transform);
    answer.set("views_with_looks", report.views_with_looks);
    answer.set("views_with_named_transform", report.views_with_named_transform);
    answer.set("named_transforms_tried", report.named_transforms_tried);
    answer.set("inactive_spaces_tried", report.inactive_spaces_tried);
    answer.set("looks_tried", report.looks_tried);
    answer.set("view_transforms_tried", report.view_transforms_tried);
    answer.set("failures", failures_to_json(report.failures));
    answer.set("notes", failures_to_json(report.notes));
}

Json findings_to_json(const workflow::ConfigFindings& findings) {
    Json answer = {{"config", to_json(findings.source)},
                   {"ok", findings.is_good()},
                   {"loaded", !findings.refusal.has_value()}};
    if (findings.refusal)
        answer.set("reason", to_json(*findings.refusal));
    else
        add_to_json(findings.report, answer);
    Json messages = Json::array();
    for (const auto& [message, times] : count(findings.messages))
        messages.push(to_json(message).set("count", times));
    answer.set("messages", messages);
    return answer;
}

class CheckCommand : public Command {
public:
    explicit CheckCommand(Options& program)
        : Command(program, "check", "Check that every color space, view and look of an OCIO config works",
                  EXAMPLES) {
        add_session_options(options, session_options);
        options.add_flag("--json", as_json, "print JSON");
    }

    ExitCode run(Console& console) override {
        workflow::ConfigFindings findings = workflow::examine_config(session_options);
        if (findings.refusal)
            findings.refusal = add_config_hint(*findings.refusal, findings.source);
        if (as_json)
            console.print_text(findings_to_json(findings).format());
        else
            print_text(findings, console);
        return findings.is_good() ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
    }

private:
    SessionChoice session_options;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_check_command(Options& program) {
    return std::make_unique<CheckCommand>(program);
}

} // namespace tool
