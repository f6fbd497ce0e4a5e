#include "tool/options.h"

#include <algorithm>
#include <map>
#include <sstream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tool/argument_text.h"
#include "tool/exit_code.h"
#include "tool/parse_errors.h"
#include "workflow/correction_text.h"

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

/// Lists options with the names of their values, or their choices; positional arguments only with choices.
/// Conditions on several options are described by their help texts.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() {
        label("SUBCOMMAND", "COMMAND");
        label("TEXT", "NAME");
        label("INT", "N");
        label("FLOAT", "N");
        keep_footers_unformatted(*this, 0);
    }

    std::string make_option_opts(const CLI::Option* option) const override {
        if (option->get_type_size() == 0)
            return {};
        const bool is_positional = option->get_positional();
        std::string text = option->get_option_text();
        if (text.empty() && !is_positional)
            text = get_label(option->get_type_name());
        if (!text.empty())
            text.insert(0, " ");
        return option->get_required() && !is_positional ? text + " (required)" : text;
    }
};

/// Throws UsageError for an option's value. `expected` says what is valid.
[[noreturn]] void refuse_value(const CLI::Option& option, const std::string& value,
                               const std::string& expected) {
    throw UsageError(fmt::format("invalid value '{}' for {}; {}", value,
                                 option.get_name(option.get_positional()), expected));
}

template <class Number>
std::optional<Number> parse_as(const std::string& text) {
    Number number{};
    return CLI::detail::lexical_cast(text, number) ? std::optional(number) : std::nullopt;
}

/// The check that a value is a number.
constexpr char NUMBER_CHECK[] = "number";

/// Checks the values of `option` with `accepts`.
template <class Accepts>
void add_check(CLI::Option* option, const std::string& expected, const Accepts& accepts,
               const std::string& name = "") {
    option->check(
        [option, expected, accepts](const std::string& text) -> std::string {
            if (!accepts(text))
                refuse_value(*option, text, expected);
            return {};
        },
        "", name);
}

/// The check that a value is not empty.
constexpr char CONTENT_CHECK[] = "content";

/// The next option is not a value either, as in "--from --to sRGB".
CLI::Option* require_content(const CLI::App& command, CLI::Option* option) {
    return option->check(
        [&command, option](const std::string& text) -> std::string {
            const bool is_option = text.rfind("--", 0) == 0 && command.get_option_no_throw(text);
            if (text.empty() || is_option)
                throw UsageError(describe_missing_value(*option));
            return {};
        },
        "", CONTENT_CHECK);
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
    option->option_text(fmt::format("{{{}}}", fmt::join(values, ",")));
    add_check(option, fmt::format("choices: {}", fmt::join(values, ", ")), [values](const std::string& text) {
        return std::find(values.begin(), values.end(), text) != values.end();
    });
    return *this;
}

const Option& Option::range(int least, int most) const {
    add_check(option, fmt::format("range: {} to {}", least, most), [=](const std::string& text) {
        const std::optional<int> number = parse_as<int>(text);
        return number && *number >= least && *number <= most;
    });
    return *this;
}

const Option& Option::positive() const {
    add_check(option, "expected a positive number", [](const std::string& text) {
        const std::optional<float> number = workflow::parse_number(text);
        return number && *number > 0;
    });
    option->get_validator(NUMBER_CHECK)->active(false); // its words say less
    return *this;
}

const Option& Option::one_value_each() const {
    option->allow_extra_args(false);
    return *this;
}

const Option& Option::may_be_empty() const {
    option->get_validator(CONTENT_CHECK)->active(false);
    return *this;
}

Options::Options(const std::string& description, const std::string& name)
    : program(std::make_unique<CLI::App>(description, name)), app(program.get()) {
    app->formatter(std::make_shared<HelpFormatter>());
    app->set_help_flag("-h,--help", "print this help");
}

Options::Options(CLI::App* command) : app(command) {}
Options::~Options() = default;
Options::Options(Options&&) noexcept = default;

Option Options::add(const std::string& name, Target target, const std::string& help,
                    const std::string& value_name) {
    CLI::Option* const option =
        std::visit([&](auto* value) { return app->add_option(name, *value, help); }, target);
    require_content(*app, option)->option_text(value_name);
    if (std::holds_alternative<int*>(target) || std::holds_alternative<std::optional<int>*>(target))
        add_check(option, "expected a whole number", parse_as<int>);
    else if (std::holds_alternative<float*>(target) || std::holds_alternative<double*>(target))
        add_check(option, "expected a number", workflow::parse_number, NUMBER_CHECK);
    return Option(option);
}

Option Options::add_list(const std::string& name, std::vector<std::string>& values, const std::string& help,
                         const std::string& value_name) {
    CLI::Option* const option = app->add_option_function<std::vector<std::string>>(
        name,
        [&values](const std::vector<std::string>& lists) {
            for (const std::string& list : lists)
                for (std::string& value : split_list(list))
                    values.push_back(std::move(value));
        },
        help);
    require_content(*app, option)->allow_extra_args(false)->option_text(value_name);
    add_check(option, "expected values separated by commas", [](const std::string& text) {
        const std::vector<std::string> split = split_list(text);
        return std::find(split.begin(), split.end(), "") == split.end();
    });
    return Option(option);
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
        const auto entry = std::make_shared<Declared>(Declared{one.name, one.value.empty(), {}});
        CLI::Option* const option =
            entry->is_flag ? app->add_flag(one.name)->description(one.help)
                           : require_content(*app, app->add_option(one.name, entry->texts, one.help))
                                 ->allow_extra_args(false)
                                 ->option_text(one.value);
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
    command->group("Commands");
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

std::optional<std::string> Options::parse(const std::vector<std::string>& given) {
    const std::vector<std::string> arguments = separate_empty_values(given);
    try {
        app->parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::Success& wish) { // help or version
        std::ostringstream text;
        app->exit(wish, text, text);
        const std::string lines = text.str();
        return lines.substr(0, lines.find_last_not_of('\n') + 1);
    } catch (const UsageError& error) { // of a value
        require_known_options(*app);
        throw UsageError(error.get_worst().message, get_help_hint(*app));
    } catch (const CLI::ParseError& error) {
        require_known_options(*app);
        throw UsageError(describe(error, *app, arguments), get_help_hint(*app));
    }
    return std::nullopt;
}

} // namespace tool
