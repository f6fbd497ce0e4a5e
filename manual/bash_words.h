#pragma once

#include <string>
#include <vector>

namespace manual {

/// A command line of bash up to the cursor.
struct BashLine {
    std::vector<std::string> words; ///< Without quotes; neither the program nor the word at the cursor.
    std::string current;            ///< The word at the cursor, without quotes.
    char quote = 0;                 ///< The quote that is open at the cursor; 0 for none.
    /// So many characters of `current` are in front of what bash replaces: it breaks words at some
    /// characters.
    std::size_t kept = 0;
};

/// Reads a line. Unquoted characters of `word_breaks` (COMP_WORDBREAKS) end the part of a word that bash
/// keeps. Assignments before the program's name are skipped.
BashLine read_bash_line(const std::string& line, const std::string& word_breaks);

/// The part of `candidate` that bash has to put in, with quotes as the word at the cursor has them.
/// `candidate` begins with `line.current`.
std::string quote_for_bash(const std::string& candidate, const BashLine& line);

} // namespace manual
