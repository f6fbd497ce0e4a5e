#include "workflow/mapping_location.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "files/input_file.h"
#include "host/parser/parser_group.h"
#include "standalone/parser/yaml_limits.h"
#include "standalone/parser/yaml_reader.h"

namespace workflow {

namespace {

using diagnostics::Code;

/// The place of the first error of syntax, and what is wrong there; the host's parser returns no place.
void locate_syntax(const std::string& text, diagnostics::Diagnostic& diagnostic) {
    ParserGroup ignored(nullptr);
    if (const auto error = read_yaml(text, ignored)) {
        diagnostic.line = error->line;
        diagnostic.column = error->column;
        diagnostic.message = error->reason;
    }
}

/// Whether the text, which may begin with a quote, begins with the word.
bool begins_with(std::string_view text, std::string_view word) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\"'"), text.size()));
    const std::string_view rest = text.substr(std::min(word.size(), text.size()));
    return text.substr(0, word.size()) == word &&
           (rest.empty() || std::string_view(" \t\r\"':,}#").find(rest.front()) != std::string_view::npos);
}

/// The line without its comment.
std::string_view cut_comment(std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i)
        if (line[i] == '#' && (i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t'))
            return line.substr(0, i);
    return line;
}

/// Whether a line holds the entry, or assigns the color space.
bool is_about(std::string_view line, const diagnostics::Diagnostic& diagnostic) {
    constexpr std::string_view KEY = "color_space:";
    if (diagnostic.code == Code::MAPPING_ENTRY_INVALID)
        return begins_with(line, diagnostic.subject);
    const std::size_t key = line.find(KEY);
    return key != std::string_view::npos && begins_with(line.substr(key + KEY.size()), diagnostic.subject);
}

void locate_subject(std::string_view text, diagnostics::Diagnostic& diagnostic) {
    unsigned int number = 1;
    for (; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (is_about(cut_comment(text.substr(0, end)), diagnostic)) {
            diagnostic.line = number;
            return;
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

} // namespace

void locate_in_mapping(diagnostics::Diagnostic& diagnostic) {
    const bool is_of_syntax = diagnostic.code == Code::MAPPING_MALFORMED;
    const bool is_of_subject = diagnostic.code == Code::MAPPING_ENTRY_INVALID ||
                               diagnostic.code == Code::MAPPING_COLOR_SPACE_UNKNOWN;
    if (diagnostic.file.empty() || (!is_of_syntax && !is_of_subject))
        return;
    auto text = files::read_whole(diagnostic.file, MAX_FILE_SIZE);
    if (!text)
        return;
    if (is_of_syntax)
        locate_syntax(*text, diagnostic);
    else
        locate_subject(*text, diagnostic);
}

} // namespace workflow
