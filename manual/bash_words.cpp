#include "manual/bash_words.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace manual {

namespace {

constexpr std::string_view BLANKS = " \t\n";
/// What bash would not take as a part of a word.
constexpr std::string_view SPECIAL = " \t\n\\'\"`$&|;<>()[]{}*?!#~^";
/// What has a meaning between double quotes.
constexpr std::string_view SPECIAL_IN_QUOTES = "\\\"`$";

bool contains(std::string_view characters, char character) {
    return characters.find(character) != std::string_view::npos;
}

/// "OCIO=show.ocio"
bool is_assignment(const std::string& word) {
    const std::size_t equals = word.find('=');
    return equals != std::string::npos && equals > 0 && word.find_first_of("/-") > equals;
}

class LineReader {
public:
    explicit LineReader(std::string_view word_breaks) : word_breaks(word_breaks) {}

    BashLine read(const std::string& text) {
        for (const char character : text)
            add(character);
        if (quote != 0)
            line.kept = opened;
        line.quote = quote;
        std::size_t program = 0;
        while (program < line.words.size() && is_assignment(line.words[program]))
            ++program;
        line.words.erase(line.words.begin(), line.words.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                      program + 1, line.words.size())));
        return line;
    }

private:
    void add(char character) {
        if (is_escaped) {
            if (quote == '"' && !contains(SPECIAL_IN_QUOTES, character))
                line.current += '\\';
            line.current += character;
            is_escaped = false;
        } else if (character == '\\' && quote != '\'') {
            is_escaped = has_word = true;
        } else if (quote != 0) {
            if (character == quote)
                quote = 0;
            else
                line.current += character;
        } else if (character == '"' || character == '\'') {
            quote = character;
            opened = line.current.size();
            has_word = true;
        } else if (contains(BLANKS, character)) {
            end_word();
        } else {
            line.current += character;
            has_word = true;
            if (contains(word_breaks, character))
                line.kept = line.current.size();
        }
    }

    void end_word() {
        if (has_word)
            line.words.push_back(line.current);
        line.current.clear();
        line.kept = 0;
        has_word = false;
    }

    const std::string_view word_breaks;
    BashLine line;
    char quote = 0;
    bool is_escaped = false;
    bool has_word = false;
    std::size_t opened = 0; ///< Characters of the word in front of the open quote.
};

} // namespace

BashLine read_bash_line(const std::string& line, const std::string& word_breaks) {
    return LineReader(word_breaks).read(line);
}

std::string quote_for_bash(const std::string& candidate, const BashLine& line) {
    std::string quoted;
    for (const char character : candidate.substr(line.kept)) {
        if (line.quote == '\'' && character == '\'')
            quoted += "'\\'";
        else if (contains(line.quote == 0 ? SPECIAL : line.quote == '"' ? SPECIAL_IN_QUOTES : "", character))
            quoted += '\\';
        quoted += character;
    }
    return quoted;
}

} // namespace manual
