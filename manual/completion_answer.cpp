#include "manual/completion_answer.h"

#include <algorithm>
#include <functional>

#include "manual/bash_words.h"
#include "manual/completion.h"
#include "standalone/standalone_app.h"
#include "workflow/offered_names.h"
#include "workflow/preference_values.h"

namespace manual {

namespace {

using workflow::OfferedName;
using Words = std::vector<std::string>;

/// The session that the command of the line would open.
workflow::SessionOptions find_session_options(const Completion& completion) {
    workflow::SessionOptions options;
    options.config_path = find_value(completion, "--config");
    options.preferences_path = find_value(completion, "--prefs");
    options.context = find_values(completion, "--context");
    return options;
}

std::vector<OfferedName::Kind> find_offered(ValueKind kind, bool has_display) {
    switch (kind) {
    case ValueKind::COLOR_SPACE:
        return {OfferedName::COLOR_SPACE, OfferedName::ROLE};
    case ValueKind::VIEW:
        return {has_display ? OfferedName::VIEW : OfferedName::VIEW_LABEL};
    case ValueKind::DISPLAY:
        return {OfferedName::DISPLAY};
    case ValueKind::LOOKS:
        return {OfferedName::LOOK};
    case ValueKind::NAMED_TRANSFORM:
        return {OfferedName::NAMED_TRANSFORM};
    case ValueKind::CDL:
        return {OfferedName::CDL};
    case ValueKind::FORMAT:
        return {OfferedName::FORMAT};
    case ValueKind::CUSTOM_SPACE:
        return {OfferedName::CUSTOM_SPACE};
    default:
        return {};
    }
}

std::vector<Candidate> list_names(const Completion& completion) {
    std::vector<Candidate> names;
    if (completion.kind == ValueKind::PREFERENCE)
        for (const workflow::PreferenceValue& preference : workflow::get_preference_values(StandaloneApp()))
            names.push_back({preference.name, ""});
    const std::string display = find_value(completion, "--display");
    const std::vector<OfferedName::Kind> kinds = find_offered(completion.kind, !display.empty());
    if (kinds.empty())
        return names;
    for (const OfferedName& offered : workflow::list_offered_names(find_session_options(completion)))
        if (std::find(kinds.begin(), kinds.end(), offered.kind) != kinds.end() &&
            (offered.display.empty() || offered.display == display))
            names.push_back({offered.name, offered.help});
    return names;
}

/// What the shell shall complete itself, and the candidates.
void print(const Completion& completion, const std::function<std::string(const Candidate&)>& format,
           std::string& answer) {
    const bool wants_cdl_file = completion.kind == ValueKind::CDL && completion.candidates.empty();
    if (completion.kind == ValueKind::FILE || wants_cdl_file)
        answer += ":files\n";
    if (completion.kind == ValueKind::FOLDER)
        answer += ":folders\n";
    for (const Candidate& candidate : completion.candidates)
        answer += "=" + format(candidate) + "\n";
}

Completion complete_names(const CommandDescription& program, const Words& words, const std::string& current) {
    Completion completion = complete(program, words, current);
    add_names(completion, list_names(completion));
    return completion;
}

void complete_bash(const CommandDescription& program, const std::string& text, const std::string& breaks,
                   std::string& answer) {
    const BashLine line = read_bash_line(text, breaks);
    print(
        complete_names(program, line.words, line.current),
        [&](const Candidate& candidate) { return quote_for_bash(candidate.text, line); }, answer);
}

void complete_words(const CommandDescription& program, const std::string& shell, const Words& words,
                    std::string& answer) {
    const bool shows_help = shell == "fish";
    print(
        complete_names(program, Words(words.begin(), words.end() - 1), words.back()),
        [&](const Candidate& candidate) {
            return candidate.text + (shows_help && !candidate.help.empty() ? "\t" + candidate.help : "");
        },
        answer);
}

} // namespace

std::string answer_completion(const CommandDescription& program, const Words& request) {
    std::string answer;
    if (request.size() == 3 && request[0] == "bash")
        complete_bash(program, request[1], request[2], answer);
    else if (request.size() > 1 && request[0] != "bash")
        complete_words(program, request[0], Words(request.begin() + 1, request.end()), answer);
    return answer;
}

} // namespace manual
