#include "tool/options.h"

#include <map>
#include <sstream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "tool/exit_code.h"
#include "workflow/correction_text.h"
#include "workflow/nearest_names.h"

namespace tool {

namespace {

/// Newer versions of CLI11 would wrap the lines of the examples and drop their indents.
template <class Formatter>
auto keep_footers_unformatted(Formatter& formatter, int)
    -> decltype(formatter.enable_footer_formatting(false)) {
    formatter.enable_footer_formatting(false);
}
template <class Formatter>
void keep_footers_unformatted(Formatter&, long) {}

/// The parsed commands, from the program to the innermost subcommand.
std::vector<const CLI::App*> get_named_commands(const CLI::App& program) {
    std::vector<const CLI::App*> named = {&program};
    while (!named.back()->get_subcommands().empty())
        named.push_back(named.back()->get_subcommands().front());
    return named;
}

/// "colorio cdl write".
std::string get_full_name(const CLI::App& program) {
    std::string name;
    for (const CLI::App* command : get_named_commands(program))
        name += (name.empty() ? "" : " ") + command->get_name();
    return name;
}

std::vector<std::string> get_option_names(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}

/// Throws UsageError for an unknown option: that is a better message than one about a missing argument.
void require_known_options(const CLI::App& program) {
    for (const std::string& argument : program.remaining(true)) {
        const std::string name = argument.substr(0, argument.find('='));
        if (name.size() <= 2 || name.substr(0, 2) != "--")
            continue;
        const CLI::App& command = *get_named_commands(program).back();
        const std::string near = workflow::did_you_mean(name, get_option_names(command));
        throw UsageError(fmt::format("unknown option '{}'", name),
                         near.empty() ? fmt::format("see {} --help", get_full_name(program)) : near);
    }
}

} // namespace

const Option& Option::required() const {
    option->required();
    return *this;
}

const Option& Option::needs(const Option& other) const {
    option->needs(other.option);
    return *this;
}

const Option& Option::excludes(const Option& other) const {
    option->excludes(other.option);
    return *this;
}

const Option& Option::choices(const std::vector<std::string>& values) const {
    option->check(CLI::IsMember(values));
    return *this;
}

const Option& Option::range(int least, int most) const {
    option->check(CLI::Range(least, most));
    return *this;
}

const Option& Option::positive() const {
    option->check([](const std::string& text) -> std::string {
        const std::optional<float> value = workflow::parse_number(text);
        return value && *value > 0 ? "" : fmt::format("'{}' is not a positive number", text);
    });
    return *this;
}

const Option& Option::one_value_each() const {
    option->allow_extra_args(false);
    return *this;
}

const Option& Option::separator(char character) const {
    option->delimiter(character);
    return *this;
}

Options::Options(const std::string& description, const std::string& name)
    : program(std::make_unique<CLI::App>(description, name)), app(program.get()) {
    keep_footers_unformatted(*app->get_formatter(), 0);
    app->set_help_flag("-h,--help", "print this help");
}

Options::Options(CLI::App* command) : app(command) {}
Options::~Options() = default;
Options::Options(Options&&) noexcept = default;

Option Options::add(const std::string& name, std::string& value, const std::string& help) {
    return Option(app->add_option(name, value, help));
}

Option Options::add(const std::string& name, int& value, const std::string& help) {
    return Option(app->add_option(name, value, help));
}

Option Options::add(const std::string& name, float& value, const std::string& help) {
    return Option(app->add_option(name, value, help));
}

Option Options::add(const std::string& name, double& value, const std::string& help) {
    return Option(app->add_option(name, value, help));
}

Option Options::add(const std::string& name, std::vector<std::string>& values, const std::string& help) {
    return Option(app->add_option(name, values, help));
}

Option Options::add_flag(const std::string& name, bool& value, const std::string& help) {
    return Option(app->add_flag(name, value, help));
}

void Options::add_ordered(const std::vector<OrderedOption>& declared, std::vector<OrderedValue>& values) {
    struct Declared {
        std::string name;
        bool is_flag;
        std::vector<std::string> texts; ///< The parser wants a place for the values.
        std::size_t used = 0;
    };
    std::map<const CLI::Option*, std::shared_ptr<Declared>> known;
    for (const OrderedOption& one : declared) {
        const auto entry = std::make_shared<Declared>(Declared{one.name, one.is_flag, {}});
        CLI::Option* const option =
            one.is_flag ? app->add_flag(one.name)->description(one.help)
                        : app->add_option(one.name, entry->texts, one.help)->allow_extra_args(false);
        known.emplace(option, entry);
    }
    app->parse_complete_callback([command = app, known, &values] {
        values.clear();
        for (const CLI::Option* option : command->parse_order())
            if (const auto found = known.find(option); found != known.end()) {
                Declared& entry = *found->second;
                values.push_back({entry.name, entry.is_flag ? "" : option->results().at(entry.used++)});
            }
    });
}

Option Options::get(const std::string& name) const {
    return Option(app->get_option(name));
}

Options Options::add_command(const std::string& name, const std::string& description,
                             const std::string& footer) {
    CLI::App* const command = app->add_subcommand(name, description);
    command->footer(footer);
    return Options(command);
}

void Options::require_command() {
    app->require_subcommand(1);
}

void Options::set_footer(const std::string& footer) {
    app->footer(footer);
}

void Options::set_version(const std::string& text) {
    app->set_version_flag("--version", text, "print the version");
}

std::string Options::get_name() const {
    return app->get_name();
}

std::vector<std::string> Options::get_command_names() const {
    std::vector<std::string> names;
    for (const CLI::App* command : app->get_subcommands({}))
        names.push_back(command->get_name());
    return names;
}

bool Options::is_wanted() const {
    return app->parsed();
}

std::optional<std::string> Options::parse(const std::vector<std::string>& arguments) {
    try {
        app->parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::Success& wish) { // help or version
        std::ostringstream text;
        app->exit(wish, text, text);
        const std::string lines = text.str();
        return lines.substr(0, lines.find_last_not_of('\n') + 1);
    } catch (const CLI::ParseError& error) {
        require_known_options(*app);
        throw UsageError(error.what(), fmt::format("see {} --help", get_full_name(*app)));
    }
    return std::nullopt;
}

} // namespace tool
