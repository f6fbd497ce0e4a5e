#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "manual/command_description.h"

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tool {

/// A declared option, for adding conditions: `options.add("--depth", depth, "...").choices({"8", "16"})`. A
/// reference to an option of the parser; valid as long as its Options.
class Option {
public:
    explicit Option(CLI::Option* option) : option(option) {}

    const Option& required() const;
    const Option& needs(const Option& other) const;
    const Option& excludes(const Option& other) const;
    const Option& choices(const std::vector<std::string>& values) const;
    const Option& range(int least, int most) const;
    const Option& positive() const;
    /// For a list: each use of the option takes one value, and does not consume the arguments after it.
    const Option& one_value_each() const;
    /// An empty text is a value, too.
    const Option& may_be_empty() const;

private:
    CLI::Option* option;
};

/// An option whose place among others on the command line matters.
struct OrderedOption {
    std::string name;
    std::string value; ///< Its name in the help; empty for a flag.
    std::string help;
};

/// One use of such an option.
struct OrderedValue {
    std::string option;
    std::string value; ///< Empty for a flag.
};

/// The options and arguments of the program or of one of its commands. Names without dashes are positional
/// arguments. The bound variables must outlive `parse`. Wraps the argument parser, whose headers take seconds
/// to compile.
class Options {
public:
    /// The options of a program; those of its commands are made by `add_command`.
    Options(const std::string& description, const std::string& name);
    ~Options();
    Options(Options&&) noexcept;
    Options& operator=(Options&&) = delete;

    /// `value_name` is what the help shows for the value: "FILE"; by default "N" for numbers, else "NAME". An
    /// empty value is refused: scripts pass it for variables that are not set.
    template <class Value>
    Option add(const std::string& name, Value& value, const std::string& help,
               const std::string& value_name = "") {
        return add(name, Target(&value), help, value_name);
    }
    /// An option whose argument holds several values, separated by commas; none of them is empty.
    Option add_list(const std::string& name, std::vector<std::string>& values, const std::string& help,
                    const std::string& value_name);
    Option add_flag(const std::string& name, bool& value, const std::string& help);
    /// Options that may be given repeatedly; `values` gets their uses in the order of the command line.
    void add_ordered(const std::vector<OrderedOption>& declared, std::vector<OrderedValue>& values);
    /// An option that was added before.
    Option get(const std::string& name) const;

    /// Adds a command; `footer` is printed unchanged after its help.
    Options add_command(const std::string& name, const std::string& description, const std::string& footer);
    void require_command();
    void set_footer(const std::string& footer);
    void set_version(const std::string& text);

    /// Everything that was added, for man pages and completion.
    manual::CommandDescription get_description() const;

    std::string get_name() const;
    std::vector<std::string> get_command_names() const;
    /// True when the parsed command line names this command.
    bool is_wanted() const;

    /// Parses the arguments without the name of the program. Returns the text of the help or the version, if
    /// the user asked for it. Throws UsageError, with a hint to the --help of the command.
    std::optional<std::string> parse(const std::vector<std::string>& arguments);

private:
    using Target =
        std::variant<std::string*, int*, std::optional<int>*, float*, double*, std::vector<std::string>*>;

    explicit Options(CLI::App* command);
    Option add(const std::string& name, Target target, const std::string& help,
               const std::string& value_name);

    std::unique_ptr<CLI::App> program; ///< Null for a command, which belongs to its program.
    CLI::App* app;
};

} // namespace tool
