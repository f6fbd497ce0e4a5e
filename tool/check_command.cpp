#include "tool/command.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "tool/console.h"
#include "tool/json_output.h"
#include "tool/text_table.h"
#include "workflow/config_check.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio check --config show.ocio
  OCIO=/shows/a/config.ocio colorio check --json)";

/// Everything that the command found out.
struct Findings {
    ConfigSource source;
    std::vector<LoggedMessage> messages;  ///< Of loading.
    std::optional<FailureReason> refusal; ///< Why the configuration was not loaded.
    CheckReport report;

    bool is_good() const { return !refusal && report.failures.empty(); }
};

Findings find_out(const SessionOptions& options, Console& console) {
    Findings findings;
    try {
        ColorSession session(options, console);
        findings.source = session.get_source();
        findings.messages = session.take_messages();
        findings.report = check_config(session);
    } catch (const ConfigError& error) {
        findings.source = error.source;
        findings.refusal = error.reason;
        findings.messages = error.messages;
    }
    return findings;
}

std::string join(const std::vector<std::string>& words, const char* separator) {
    return fmt::format("{}", fmt::join(words, separator));
}

/// What failures call their subject, in text and in JSON.
struct SubjectNames {
    const char* text;
    const char* json;
};

SubjectNames get_names(CheckFailure::Subject subject) {
    switch (subject) {
    case CheckFailure::VIEW:
        return {"view", "view"};
    case CheckFailure::NAMED_TRANSFORM:
        return {"named transform", "named transform"};
    case CheckFailure::INACTIVE_COLOR_SPACE:
        return {"inactive colour space", "inactive color space"};
    case CheckFailure::LOOK:
        return {"look", "look"};
    case CheckFailure::VIEW_TRANSFORM:
        return {"view transform", "view transform"};
    case CheckFailure::COLOR_SPACE:
        break;
    }
    return {"colour space", "color space"};
}

std::string describe(const CheckFailure& failure) {
    std::string subject = fmt::format("{} '{}'", get_names(failure.subject).text, failure.name);
    if (!failure.directions.empty())
        subject += ", " + join(failure.directions, " and ");
    if (!failure.way.empty())
        subject += ", through " + failure.way;
    return fmt::format("{}: {}", subject, failure.reason.text);
}

std::string format_count(std::size_t count) {
    return count == 0 ? "none" : std::to_string(count);
}

/// "Views: 5 with a view transform, 2 with looks."; nothing where there are none.
void print_counts(const char* start, const std::vector<std::string>& counts, const std::string& end,
                  Console& console) {
    if (!counts.empty())
        console.print(fmt::format("{}: {}.{}", start, join(counts, ", "), end));
}

void print_views_in_detail(const CheckReport& report, Console& console) {
    std::vector<std::string> counts;
    for (const auto& [count, words] : {std::pair(report.views_with_view_transform, "with a view transform"),
                                       {report.views_with_looks, "with looks"},
                                       {report.views_with_named_transform, "showing a named transform"}})
        if (count > 0)
            counts.push_back(fmt::format("{} {}", count, words));
    print_counts("Views", counts, "", console);
}

void print_other_trials(const CheckReport& report, Console& console) {
    std::vector<std::string> counts;
    for (const auto& [count, thing] : {std::pair(report.named_transforms_tried, "named transform"),
                                       {report.inactive_spaces_tried, "inactive colour space"},
                                       {report.looks_tried, "look"},
                                       {report.view_transforms_tried, "view transform"}})
        if (count > 0)
            counts.push_back(count_things(count, thing));
    print_counts("Also tried", counts, fmt::format(" Notices: {}.", format_count(report.notices.size())),
                 console);
}

void print_report(const CheckReport& report, Console& console) {
    for (const CheckFailure& failure : report.failures)
        console.print(fmt::format("  failed: {}", describe(failure)));
    for (const CheckFailure& notice : report.notices)
        console.print(fmt::format("  notice: {}", describe(notice)));
    console.print(fmt::format("Colour spaces tried to and from '{}': {}. Views tried: {}. Failures: {}.",
                              report.scene_linear, report.spaces_tried, report.views_tried,
                              format_count(report.failures.size())));
    print_views_in_detail(report, console);
    print_other_trials(report, console);
}

void print_messages(const std::vector<LoggedMessage>& messages, Console& console) {
    for (const auto& [message, count] : count_messages(messages))
        console.print(fmt::format("  {}: {}{}", get_level_name(message.level), message.text,
                                  count > 1 ? fmt::format(" ({} times)", count) : ""));
}

void print_text(const Findings& findings, Console& console) {
    console.print_heading(fmt::format("Configuration: {}", findings.source.describe()));
    print_messages(findings.messages, console);
    if (findings.refusal) {
        console.print(fmt::format("It cannot be loaded: {}", findings.refusal->text));
        return;
    }
    print_report(findings.report, console);
}

nlohmann::ordered_json to_json(const CountedMessage& counted) {
    return {{"level", get_level_name(counted.message.level)},
            {"text", counted.message.text},
            {"count", counted.count}};
}

nlohmann::ordered_json to_json(const CheckFailure& failure) {
    return {{"what", get_names(failure.subject).json},    {"name", failure.name},
            {"directions", failure.directions},           {"way", failure.way},
            {"kind", get_kind_name(failure.reason.kind)}, {"reason", failure.reason.text}};
}

template <class Item>
nlohmann::ordered_json to_json(const std::vector<Item>& items) {
    auto list = nlohmann::ordered_json::array();
    for (const Item& item : items)
        list.push_back(to_json(item));
    return list;
}

void add_to_json(const CheckReport& report, nlohmann::ordered_json& answer) {
    answer["scene_linear"] = report.scene_linear;
    answer["spaces_tried"] = report.spaces_tried;
    answer["views_tried"] = report.views_tried;
    answer["views_with_view_transform"] = report.views_with_view_transform;
    answer["views_with_looks"] = report.views_with_looks;
    answer["views_with_named_transform"] = report.views_with_named_transform;
    answer["named_transforms_tried"] = report.named_transforms_tried;
    answer["inactive_spaces_tried"] = report.inactive_spaces_tried;
    answer["looks_tried"] = report.looks_tried;
    answer["view_transforms_tried"] = report.view_transforms_tried;
    answer["failures"] = to_json(report.failures);
    answer["notices"] = to_json(report.notices);
}

nlohmann::ordered_json to_json(const Findings& findings) {
    nlohmann::ordered_json answer = {{"config", to_json(findings.source)},
                                     {"ok", findings.is_good()},
                                     {"loaded", !findings.refusal.has_value()}};
    if (findings.refusal) {
        answer["kind"] = get_kind_name(findings.refusal->kind);
        answer["reason"] = findings.refusal->text;
    } else {
        add_to_json(findings.report, answer);
    }
    answer["messages"] = to_json(count_messages(findings.messages));
    return answer;
}

class CheckCommand : public Command {
public:
    explicit CheckCommand(CLI::App& program)
        : Command(program, "check", "Find what does not work in a configuration", EXAMPLES) {
        add_session_options(*options, session_options);
        options->add_flag("--json", as_json, "Write JSON");
    }

    ExitCode run(Console& console) override {
        const Findings findings = find_out(session_options, console);
        if (as_json)
            console.print(format_json(to_json(findings)));
        else
            print_text(findings, console);
        return findings.is_good() ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
    }

private:
    SessionOptions session_options;
    bool as_json = false;
};

} // namespace

std::unique_ptr<Command> make_check_command(CLI::App& program) {
    return std::make_unique<CheckCommand>(program);
}

} // namespace tool
