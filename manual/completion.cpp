#include "manual/completion.h"

#include <algorithm>
#include <set>

namespace manual {

namespace {

bool begins_with(const std::string& text, const std::string& beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
}

/// Reads the words before the cursor: which command they name, and what comes next.
class LineReader {
public:
    explicit LineReader(const CommandDescription& program) : command(&program) {}

    void read(const std::string& word) {
        if (waiting) {
            context.insert(context.end(), {waiting->names.back(), word});
            waiting = nullptr;
        } else if (!only_arguments && word == "--") {
            only_arguments = true;
        } else if (!only_arguments && word.size() > 1 && word.front() == '-') {
            read_option(word);
        } else if (const CommandDescription* part = find_command(*command, word)) {
            name += (name.empty() ? "" : " ") + word;
            command = part;
        } else {
            ++arguments;
        }
    }

    /// The argument at the cursor; null after the last one.
    const OptionDescription* find_argument() const {
        std::size_t position = 0;
        for (const OptionDescription& option : command->options)
            if (option.is_positional && (option.is_repeatable || position++ == arguments))
                return &option;
        return nullptr;
    }

    const OptionDescription* find_option(const std::string& option_name) const {
        for (const OptionDescription& option : command->options)
            if (std::find(option.names.begin(), option.names.end(), option_name) != option.names.end() &&
                !option.is_positional)
                return &option;
        return nullptr;
    }

    const CommandDescription* command;
    std::string name;                           ///< "cdl add"
    const OptionDescription* waiting = nullptr; ///< The option whose value comes next.
    bool only_arguments = false;                ///< "--" was read.
    std::set<const OptionDescription*> used;
    std::vector<std::string> context;

private:
    void read_option(const std::string& word) {
        const std::size_t equals = word.find('=');
        const OptionDescription* const option = find_option(word.substr(0, equals));
        if (!option)
            return;
        used.insert(option);
        if (option->takes_value && equals == std::string::npos)
            waiting = option;
        else if (option->takes_value)
            context.insert(context.end(), {option->names.back(), word.substr(equals + 1)});
    }

    std::size_t arguments = 0;
};

void offer(Completion& completion, const std::string& text, const std::string& help) {
    if (begins_with(text, completion.before + completion.value))
        completion.candidates.push_back({text, help});
}

void offer_value(Completion& completion, const LineReader& line, const OptionDescription& option) {
    completion.kind = get_value_kind(line.name, option);
    if (completion.kind == ValueKind::CHOICE)
        for (const std::string& choice : option.choices)
            offer(completion, completion.before + choice, "");
}

void offer_options(Completion& completion, const LineReader& line) {
    for (const OptionDescription& option : line.command->options)
        if (!option.is_positional && (option.is_repeatable || line.used.count(&option) == 0))
            for (const std::string& name : option.names)
                if (begins_with(name, "--"))
                    offer(completion, name, option.help);
}

} // namespace

Completion complete(const CommandDescription& program, const std::vector<std::string>& words,
                    const std::string& current) {
    LineReader line(program);
    for (const std::string& word : words)
        line.read(word);
    Completion completion;
    completion.value = current;
    completion.context = line.context;
    const bool may_be_option = !line.only_arguments && begins_with(current, "-");
    const std::size_t equals = current.find('=');
    const OptionDescription* const joined =
        may_be_option && equals != std::string::npos ? line.find_option(current.substr(0, equals)) : nullptr;
    if (line.waiting) {
        offer_value(completion, line, *line.waiting);
    } else if (joined && joined->takes_value) {
        completion.before = current.substr(0, equals + 1);
        completion.value = current.substr(equals + 1);
        offer_value(completion, line, *joined);
    } else if (may_be_option) {
        offer_options(completion, line);
    } else {
        for (const CommandDescription& command : line.command->commands)
            offer(completion, command.name, command.description);
        if (const OptionDescription* const argument = line.find_argument())
            offer_value(completion, line, *argument);
    }
    return completion;
}

void add_names(Completion& completion, const std::vector<Candidate>& names) {
    std::string listed; // what is in front of the last name of a list
    if (completion.kind == ValueKind::LOOKS)
        if (const std::size_t end = completion.value.find_last_of(",:"); end != std::string::npos)
            listed = completion.value.substr(0, completion.value.find_first_not_of(' ', end + 1));
    const std::string typed = completion.value.substr(listed.size());
    const bool is_inverse = completion.kind == ValueKind::LOOKS && begins_with(typed, "-");
    for (const Candidate& name : names)
        offer(completion, completion.before + listed + (is_inverse ? "-" : "") + name.text, name.help);
}

std::vector<std::string> find_values(const Completion& completion, const std::string& option) {
    std::vector<std::string> values;
    for (std::size_t i = 0; i + 1 < completion.context.size(); i += 2)
        if (completion.context[i] == option)
            values.push_back(completion.context[i + 1]);
    return values;
}

std::string find_value(const Completion& completion, const std::string& option) {
    const std::vector<std::string> values = find_values(completion, option);
    return values.empty() ? "" : values.back();
}

} // namespace manual
