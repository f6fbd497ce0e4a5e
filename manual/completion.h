#pragma once

#include <string>
#include <vector>

#include "manual/command_description.h"
#include "manual/value_kind.h"

namespace manual {

/// Something that can stand in place of the word at the cursor.
struct Candidate {
    std::string text;
    std::string help; ///< May be empty.
};

/// What can stand at the cursor.
struct Completion {
    std::vector<Candidate> candidates; ///< Whole words that begin with the one at the cursor.
    /// The kind of value that is wanted; OTHER for none. FILE and FOLDER are completed by the shell.
    ValueKind kind = ValueKind::OTHER;
    std::string before;               ///< The part of the word in front of the value: "--from=".
    std::string value;                ///< The part of the value that was typed.
    std::vector<std::string> context; ///< Values given for --config, --prefs and so on: names and values.
};

/// Completes the word `current` of a command line. `words` are those before it, without the program's name.
Completion complete(const CommandDescription& program, const std::vector<std::string>& words,
                    const std::string& current);

/// Adds those of `names` that begin with the typed value. For LOOKS the last one of a list is completed.
void add_names(Completion& completion, const std::vector<Candidate>& names);

/// The values that the command line gives an option.
std::vector<std::string> find_values(const Completion& completion, const std::string& option);
/// The last one; empty for none.
std::string find_value(const Completion& completion, const std::string& option);

} // namespace manual
