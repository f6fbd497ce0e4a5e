#include "workflow/failure_reason.h"

#include <algorithm>
#include <new>
#include <optional>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tool {

namespace {

constexpr std::string_view LIBRARY_PREFIX = "OCIO exception: ";
/// What a sentence that says what failed does not need.
constexpr std::string_view LIBRARY_MARK = "Error: ";
constexpr char OUT_OF_MEMORY[] = "out of memory";
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

bool is_name_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// The context variables that a path names as $X, ${X} or %X%, each once.
std::vector<std::string> find_variables(std::string_view path) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] != '$' && path[i] != '%')
            continue;
        const std::size_t start = i + (path.substr(i, 2) == "${" ? 2 : 1);
        std::size_t end = start;
        while (end < path.size() && is_name_character(path[end]))
            ++end;
        const char close = path[i] == '%' ? '%' : start == i + 2 ? '}' : '\0';
        const bool is_closed = close == '\0' || (end < path.size() && path[end] == close);
        const std::string name(path.substr(start, end - start));
        if (name.empty() || !is_closed)
            continue;
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
        i = close == '\0' ? end - 1 : end;
    }
    return names;
}

std::string list_variables(const std::vector<std::string>& names) {
    return fmt::format("context variable{} '{}'", names.size() == 1 ? "" : "s", fmt::join(names, "', '"));
}

/// `message` is one line.
FailureReason explain_missing_file(std::string_view message, const std::string& file) {
    const auto attempts = find_between(message, "attempts were made: ", "\n");
    if (!attempts)
        return {FailureKind::MISSING_FILE, fmt::format("the file '{}' is missing", file)};
    // What the library knows is replaced in the paths that it tried; what stands there still has no value.
    std::vector<std::string> unset = find_variables(*attempts);
    const std::vector<std::string> named = find_variables(file);
    const auto own = std::stable_partition(unset.begin(), unset.end(), [&](const std::string& name) {
        return std::find(named.begin(), named.end(), name) != named.end();
    });
    if (own != unset.begin()) {
        unset.erase(own, unset.end());
        return {FailureKind::UNSET_VARIABLE,
                fmt::format("the {} in the path '{}' {} not set; set {} in the environment or in the config",
                            list_variables(unset), file, unset.size() == 1 ? "is" : "are",
                            unset.size() == 1 ? "it" : "them")};
    }
    std::string places;
    for (std::size_t start = 0; start < attempts->size();) {
        const std::size_t end = std::min(attempts->find(" : ", start), attempts->size());
        places += (places.empty() ? "" : ", ") + quote(flatten(attempts->substr(start, end - start)));
        start = end + 3;
    }
    // A folder's name may hold such a sign, too.
    const std::string question =
        unset.empty() ? "" : fmt::format("; is the {} of the search path set?", list_variables(unset));
    return {FailureKind::MISSING_FILE,
            fmt::format("the file '{}' is missing; looked for as {}{}", file, places, question)};
}

FailureReason explain_bad_file(std::string_view message, const std::string& file) {
    if (const auto version = find_between(message, "Unsupported transform file version '", "'"))
        return {
            FailureKind::NEWER_FILE,
            fmt::format("the file '{}' is of version {}, which needs a newer OpenColorIO", file, *version)};
    const auto reason = find_between(message, "failed with: ", "    '");
    return {FailureKind::BAD_FILE, fmt::format("the file '{}' is damaged or of an unknown kind{}", file,
                                               reason ? ": " + flatten(*reason) : "")};
}

} // namespace

const char* get_kind_name(FailureKind kind) {
    switch (kind) {
    case FailureKind::MISSING_FILE:
        return "missing file";
    case FailureKind::UNSET_VARIABLE:
        return "unset variable";
    case FailureKind::BAD_FILE:
        return "bad file";
    case FailureKind::NEWER_FILE:
        return "newer file";
    case FailureKind::CYCLE:
        return "cycle";
    case FailureKind::NEWER_CONFIG:
        return "newer configuration";
    case FailureKind::UNKNOWN_NAME:
        return "unknown name";
    case FailureKind::MEMORY:
        return "out of memory";
    default:
        return "other";
    }
}

FailureReason explain_library_message(const std::string& message) {
    const std::string line =
        flatten(message.substr(starts_with(message, LIBRARY_MARK) ? LIBRARY_MARK.size() : 0));
    if (const auto file = find_between(line, "The specified file reference '", "'"))
        return explain_missing_file(line, *file);
    if (const auto file = find_between(message, "The specified transform file '", "'"))
        return explain_bad_file(message, *file);
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
    if (line == std::bad_alloc().what())
        return {FailureKind::MEMORY, OUT_OF_MEMORY};
    return {FailureKind::OTHER, line};
}

std::string explain_exception(const std::exception& exception) {
    return dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ? OUT_OF_MEMORY : exception.what();
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
