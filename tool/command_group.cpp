#include "tool/command_group.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "workflow/nearest_names.h"

namespace tool {

CommandGroup::CommandGroup(Options& program, const char* name, const char* description, const char* examples,
                           const std::vector<MakeCommand>& make_parts, std::string default_part)
    : Command(program, name, description, examples), default_part(std::move(default_part)) {
    options.require_command();
    for (const MakeCommand make : make_parts)
        parts.push_back(make(options));
}

ExitCode CommandGroup::run(Console& console) {
    const auto wanted =
        std::find_if(parts.begin(), parts.end(), [](const auto& part) { return part->is_wanted(); });
    return (*wanted)->run(console);
}

void CommandGroup::complete_arguments(std::vector<std::string>& arguments) const {
    const std::string word = arguments.size() > 1 ? arguments[1] : "";
    if (word == "-h" || word == "--help")
        return;
    std::vector<std::string> names;
    for (const auto& part : parts)
        names.push_back(part->get_name());
    if (word.empty() || word.front() == '-') {
        if (default_part.empty())
            throw UsageError(fmt::format("'{}' needs one of {}", get_name(), fmt::join(names, ", ")),
                             fmt::format("see colorio {} --help", get_name()));
        arguments.insert(arguments.begin() + 1, default_part);
    } else if (std::find(names.begin(), names.end(), word) == names.end()) {
        throw UsageError(fmt::format("unknown command '{} {}'", get_name(), word),
                         workflow::did_you_mean(word, names));
    }
}

} // namespace tool
