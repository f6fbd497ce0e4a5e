#include "tool/command.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "tool/color_session.h"
#include "tool/config_check.h"
#include "tool/console.h"
#include "tool/json_output.h"

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

std::string describe(const CheckFailure& failure) {
    if (failure.subject == CheckFailure::VIEW)
        return fmt::format("view '{}': {}", failure.name, failure.reason.text);
    return fmt::format("colour space '{}', {}: {}", failure.name, join(failure.directions, " and "),
                       failure.reason.text);
}

/// Each message once, in the order of their first coming, with a count.
void print_messages(const std::vector<LoggedMessage>& messages, Console& console) {
    std::map<std::string, unsigned int> counts;
    std::vector<std::string> lines;
    for (const LoggedMessage& message : messages) {
        const std::string line = fmt::format("{}: {}", get_level_name(message.level), message.text);
        if (++counts[line] == 1)
            lines.push_back(line);
    }
    for (const std::string& line : lines) {
        const unsigned int count = counts[line];
        console.print(fmt::format("  {}{}", line, count > 1 ? fmt::format(" ({} times)", count) : ""));
    }
}

void print_text(const Findings& findings, Console& console) {
    console.print_heading(fmt::format("Configuration: {}", findings.source.describe()));
    print_messages(findings.messages, console);
    if (findings.refusal) {
        console.print(fmt::format("It cannot be loaded: {}", findings.refusal->text));
        return;
    }
    const CheckReport& report = findings.report;
    for (const CheckFailure& failure : report.failures)
        console.print(fmt::format("  failed: {}", describe(failure)));
    console.print(fmt::format("Colour spaces tried to and from '{}': {}. Views tried: {}. Failures: {}.",
                              report.scene_linear, report.spaces_tried, report.views_tried,
                              report.failures.empty() ? "none" : std::to_string(report.failures.size())));
}

nlohmann::ordered_json to_json(const LoggedMessage& message) {
    return {{"level", get_level_name(message.level)}, {"text", message.text}};
}

nlohmann::ordered_json to_json(const CheckFailure& failure) {
    return {{"what", failure.subject == CheckFailure::VIEW ? "view" : "color space"},
            {"name", failure.name},
            {"directions", failure.directions},
            {"kind", get_kind_name(failure.reason.kind)},
            {"reason", failure.reason.text}};
}

template <class Item>
nlohmann::ordered_json to_json(const std::vector<Item>& items) {
    auto list = nlohmann::ordered_json::array();
    for (const Item& item : items)
        list.push_back(to_json(item));
    return list;
}

nlohmann::ordered_json to_json(const Findings& findings) {
    nlohmann::ordered_json answer = {{"config", to_json(findings.source)},
                                     {"ok", findings.is_good()},
                                     {"loaded", !findings.refusal.has_value()}};
    if (findings.refusal) {
        answer["kind"] = get_kind_name(findings.refusal->kind);
        answer["reason"] = findings.refusal->text;
    } else {
        answer["scene_linear"] = findings.report.scene_linear;
        answer["spaces_tried"] = findings.report.spaces_tried;
        answer["views_tried"] = findings.report.views_tried;
        answer["failures"] = to_json(findings.report.failures);
    }
    answer["messages"] = to_json(findings.messages);
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
