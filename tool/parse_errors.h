#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace tool {

/// "see colorio cdl write --help", for the parsed command.
std::string get_help_hint(const CLI::App& program);

/// Throws UsageError for an unknown option: that is a better message than one about a missing argument.
void require_known_options(const CLI::App& program);

/// What is wrong with the number of values or of arguments, or with their combination. `arguments` are those
/// that were parsed.
std::string describe(const CLI::ParseError& error, const CLI::App& program,
                     const std::vector<std::string>& arguments);

} // namespace tool
