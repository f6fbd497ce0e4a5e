#include <algorithm>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tool/command.h"
#include "workflow/nearest_names.h"

namespace tool {

namespace {

/// A command that consists of subcommands: "colorio cdl list", "colorio cdl write".
struct Group {
    const char* name;
    const char* description;
    const char* examples;
    std::vector<MakeCommand> parts;
    const char* default_part = ""; ///< The subcommand that runs when the user gives none; may be empty.
};

Group describe_cdl() {
    return {"cdl",
            "Read and write CDL files, and manage the CDLs of the preferences",
            R"(  colorio cdl list grades.ccc
  colorio cdl write warm.cc --cdl warm=1.1,1,0.9/0,0,0/1,1,1/1
  colorio cdl add warm grades.ccc:shot_010
  colorio list cdls)",
            {make_cdl_list_command, make_cdl_show_command, make_cdl_write_command, make_cdl_add_command,
             make_cdl_remove_command}};
}

Group describe_formats() {
    return {"formats",
            "List and change the color spaces of image formats",
            R"(  colorio formats
  colorio formats set Targa --space linear
  colorio formats add Camera --extensions dng,cr2 --space linear
  colorio formats check --config show.ocio)",
            {make_formats_list_command, make_formats_set_command, make_formats_add_command,
             make_formats_remove_command, make_formats_check_command},
            "list"};
}

Group describe_space() {
    return {"space",
            "List, add and remove custom color spaces, which extend the built-in config",
            R"(  colorio space add film --lut film.cube
  colorio space list
  colorio space remove film)",
            {make_space_list_command, make_space_add_command, make_space_remove_command},
            "list"};
}

Group describe_prefs() {
    return {"prefs",
            "Show and change the preferences file",
            R"(  colorio prefs path
  colorio prefs show --json
  colorio prefs set color_space_file_path show.ocio)",
            {make_prefs_path_command, make_prefs_set_command, make_prefs_show_command}};
}

template <Group (*describe)()>
class CommandGroup : public Command {
public:
    explicit CommandGroup(Options& program) : CommandGroup(program, describe()) {}

    ExitCode run(Console& console) override {
        const auto wanted =
            std::find_if(parts.begin(), parts.end(), [](const auto& part) { return part->is_wanted(); });
        return (*wanted)->run(console);
    }

    void complete_arguments(std::vector<std::string>& arguments) const override {
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

private:
    CommandGroup(Options& program, const Group& group)
        : Command(program, group.name, group.description, group.examples), default_part(group.default_part) {
        options.require_command();
        for (const MakeCommand make : group.parts)
            parts.push_back(make(options));
    }

    std::vector<std::unique_ptr<Command>> parts;
    const std::string default_part;
};

} // namespace

const MakeCommand make_cdl_command = make_command<CommandGroup<describe_cdl>>;
const MakeCommand make_formats_command = make_command<CommandGroup<describe_formats>>;
const MakeCommand make_space_command = make_command<CommandGroup<describe_space>>;
const MakeCommand make_prefs_command = make_command<CommandGroup<describe_prefs>>;

} // namespace tool
