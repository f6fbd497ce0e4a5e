#include "workflow/failure_reason.h"

#include <optional>
#include <string_view>

#include <fmt/format.h>

namespace tool {

namespace {

constexpr std::string_view LIBRARY_PREFIX = "OCIO exception: ";
/// What a sentence that says what failed does not need.
constexpr std::string_view LIBRARY_MARK = "Error: ";
constexpr std::string_view MODULE_PREFIX = "Color Management: ";

bool starts_with(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// What stands in the text from behind `begin` up to `end`, or up to the text's end.
std::optional<std::string> find_between(std::string_view text, std::string_view begin, std::string_view end) {
    const std::size_t start = text.find(begin);
    if (start == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(start + begin.size());
    return std::string(rest.substr(0, rest.find(end)));
}

/// One line: runs of blanks and line ends become one blank, a final full stop goes.
std::string flatten(std::string_view text) {
    std::string line;
    for (const char character : text) {
        const bool blank = character == ' ' || character == '\n' || character == '\t' || character == '\r';
        if (!blank)
            line += character;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    while (!line.empty() && (line.back() == ' ' || line.back() == '.'))
        line.pop_back();
    return line;
}

/// In quotes, where the library left them out.
std::string quote(const std::string& path) {
    return starts_with(path, "'") ? path : fmt::format("'{}'", path);
}

/// `message` is one line.
std::string explain_missing_file(std::string_view message, const std::string& file) {
    const auto attempts = find_between(message, "attempts were made: ", "\n");
    if (!attempts)
        return fmt::format("the file '{}' is missing", file);
    std::string places;
    for (std::size_t start = 0; start < attempts->size();) {
        const std::size_t end = std::min(attempts->find(" : ", start), attempts->size());
        places += (places.empty() ? "" : ", ") + quote(flatten(attempts->substr(start, end - start)));
        start = end + 3;
    }
    return fmt::format("the file '{}' is missing; looked for as {}", file, places);
}

std::string explain_bad_file(std::string_view message, const std::string& file) {
    const auto reason = find_between(message, "failed with: ", "    '");
    return fmt::format("the file '{}' is damaged or of an unknown kind{}", file,
                       reason ? ": " + flatten(*reason) : "");
}

} // namespace

const char* get_kind_name(FailureKind kind) {
    switch (kind) {
    case FailureKind::MISSING_FILE:
        return "missing file";
    case FailureKind::BAD_FILE:
        return "bad file";
    case FailureKind::CYCLE:
        return "cycle";
    case FailureKind::NEWER_CONFIG:
        return "newer configuration";
    case FailureKind::UNKNOWN_NAME:
        return "unknown name";
    default:
        return "other";
    }
}

FailureReason explain_library_message(const std::string& message) {
    const std::string line =
        flatten(message.substr(starts_with(message, LIBRARY_MARK) ? LIBRARY_MARK.size() : 0));
    if (const auto file = find_between(line, "The specified file reference '", "'"))
        return {FailureKind::MISSING_FILE, explain_missing_file(line, *file)};
    if (const auto file = find_between(message, "The specified transform file '", "'"))
        return {FailureKind::BAD_FILE, explain_bad_file(message, *file)};
    if (contains(line, "cannot be read as a LUT"))
        return {FailureKind::BAD_FILE, line};
    if (contains(line, "forms a cycle: "))
        return {FailureKind::CYCLE, line};
    if (contains(line, "needs a newer colour library"))
        return {FailureKind::NEWER_CONFIG, line};
    if (contains(line, "could not be found") || contains(line, "unknown colour space"))
        return {FailureKind::UNKNOWN_NAME, line};
    if (contains(line, "Singular Matrix") || contains(line, "Matrix inverse does not exist"))
        return {FailureKind::OTHER, "its matrix cannot be inverted, so this direction does not exist"};
    return {FailureKind::OTHER, line};
}

bool is_library_failure(const LoggedMessage& message) {
    return starts_with(message.text, LIBRARY_PREFIX);
}

FailureReason find_failure_reason(const std::vector<LoggedMessage>& messages) {
    const LoggedMessage* last_warning = nullptr;
    const LoggedMessage* first_error = nullptr;
    for (const LoggedMessage& message : messages) {
        if (is_library_failure(message))
            return explain_library_message(message.text.substr(LIBRARY_PREFIX.size()));
        if (message.level == LOG_ERROR && first_error == nullptr)
            first_error = &message;
        if (message.level == LOG_WARNING)
            last_warning = &message;
    }
    const LoggedMessage* told = first_error != nullptr ? first_error : last_warning;
    if (told == nullptr)
        return {FailureKind::OTHER, "the module gives no reason"};
    const bool prefixed = starts_with(told->text, MODULE_PREFIX);
    return {FailureKind::OTHER, flatten(told->text.substr(prefixed ? MODULE_PREFIX.size() : 0))};
}

std::string explain_failure(const std::vector<LoggedMessage>& messages) {
    return find_failure_reason(messages).text;
}

} // namespace tool
