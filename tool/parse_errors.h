#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
class ParseError;
} // namespace CLI

namespace tool {

/// "see colorio cdl write --help", for the parsed command.
std::string get_help_hint(const CLI::App& program);

/// For an option, or a positional argument, without a value or with an empty one.
std::string describe_missing_value(const CLI::Option& option);

/// Throws UsageError for an unknown option: that is a better message than one about a missing argument.
void require_known_options(const CLI::App& program);

/// What is wrong with the number of values or of arguments, or with their combination. `arguments` are those
/// that were parsed.
std::string describe(const CLI::ParseError& error, const CLI::App& program,
                     const std::vector<std::string>& arguments);

} // namespace tool
