#include "colorio/ocio/variable_expansion.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

#include "colorio/ocio/error.h"

namespace ocio {

namespace {

constexpr std::size_t MAX_LENGTH = 65536;
/// Rounds of replacement; real configs take two or three.
constexpr std::size_t MAX_ROUNDS = 256;
/// Characters searched for variables, for all texts of a config: a second or so.
constexpr std::size_t MAX_WORK = 2'000'000'000;
/// Names shown of a chain that is too long to be listed.
constexpr std::size_t MAX_NAMES_SHOWN = 8;

/// An escape for any character, or one that joins two lines.
bool hides_characters(const std::string& yaml, std::size_t at) {
    return yaml[at] == '\\' && std::string_view("xuU\r\n").find(yaml[at + 1]) != std::string_view::npos;
}

} // namespace

bool may_hold_variables(const std::string& text) {
    return text.find_first_of("$%") != std::string::npos;
}

VariableExpansion::VariableExpansion(const library::Context& context) {
    for (int i = 0; i < context.getNumStringVars(); ++i) {
        const std::string name = context.getStringVarNameByIndex(i);
        const char* value = context.getStringVar(name.c_str());
        variables_.push_back({name, value ? value : "", {"${" + name + "}", "$" + name, "%" + name + "%"}});
    }
    std::stable_sort(variables_.begin(), variables_.end(),
                     [](const Variable& a, const Variable& b) { return a.name.size() > b.name.size(); });
}

void VariableExpansion::require_bounded(const std::string& text) {
    std::string expanded = text;
    std::size_t rounds = 0;
    for (bool changing = may_hold_variables(text); changing; ++rounds) {
        const std::size_t before = replacements_;
        for (const Variable& variable : variables_) {
            replace(expanded, variable);
            if (expanded.size() > MAX_LENGTH || work_ > MAX_WORK)
                refuse(text);
        }
        changing = replacements_ > before;
        if (rounds == MAX_ROUNDS)
            refuse(text);
    }
}

void VariableExpansion::require_bounded_value(const std::string& name) {
    for (const Variable& variable : variables_)
        if (variable.name == name && may_hold_variables(variable.value))
            require_bounded(variable.spellings[0]);
}

bool VariableExpansion::may_be_used_in(const std::string& yaml) const {
    constexpr char MARKS[] = "$%\\";
    for (std::size_t at = yaml.find_first_of(MARKS); at != std::string::npos;
         at = yaml.find_first_of(MARKS, at + 1))
        if (hides_characters(yaml, at) || begins_variable(yaml, at))
            return true;
    return false;
}

bool VariableExpansion::begins_variable(const std::string& text, std::size_t at) const {
    for (const Variable& variable : variables_)
        for (const std::string& spelling : variable.spellings)
            if (text.compare(at, spelling.size(), spelling) == 0)
                return true;
    return false;
}

/// Stops where the text becomes too long.
void VariableExpansion::replace(std::string& text, const Variable& variable) {
    for (const std::string& spelling : variable.spellings) {
        work_ += text.size();
        for (std::size_t at = text.find(spelling); at != std::string::npos && text.size() <= MAX_LENGTH;
             at = text.find(spelling, at + variable.value.size())) {
            text.replace(at, spelling.size(), variable.value);
            work_ += text.size();
            ++replacements_;
        }
    }
}

/// The variables that a text names, in the order of their first mention.
std::vector<const VariableExpansion::Variable*> VariableExpansion::variables_in(std::string text) const {
    std::map<std::size_t, const Variable*> found;
    for (const Variable& variable : variables_)
        for (const std::string& spelling : variable.spellings)
            for (std::size_t at = text.find(spelling); at != std::string::npos; at = text.find(spelling)) {
                text.replace(at, spelling.size(), spelling.size(), '\0');
                found.emplace(at, &variable);
            }
    std::vector<const Variable*> named;
    for (const auto& [at, variable] : found)
        if (std::find(named.begin(), named.end(), variable) == named.end())
            named.push_back(variable);
    return named;
}

void VariableExpansion::refuse(const std::string& text) const {
    std::vector<const Variable*> chain = find_cycle(text);
    if (!chain.empty())
        throw_error(diagnostics::Code::CONFIG_VARIABLE, "context variables form a cycle: " + names_of(chain),
                    chain.front()->name);
    for (auto next = variables_in(text); !next.empty(); next = variables_in(next.front()->value))
        chain.push_back(next.front());
    throw_error(diagnostics::Code::CONFIG_VARIABLE,
                std::string("context variables expand too far") +
                    (chain.empty() ? "" : ": " + names_of(chain)),
                chain.empty() ? "" : chain.front()->name);
}

/// The variables from one back to itself that the replacement in `text` runs into; empty for none.
std::vector<const VariableExpansion::Variable*> VariableExpansion::find_cycle(const std::string& text) const {
    struct Step {
        const Variable* variable; ///< null for the text
        std::vector<const Variable*> named;
        std::size_t next;
    };
    std::vector<Step> path{{nullptr, variables_in(text), 0}};
    std::set<const Variable*> entered;
    while (!path.empty()) {
        Step& step = path.back();
        if (step.next == step.named.size()) {
            path.pop_back();
            continue;
        }
        const Variable* variable = step.named[step.next++];
        const auto first =
            std::find_if(path.begin(), path.end(), [&](const Step& s) { return s.variable == variable; });
        if (first != path.end()) {
            std::vector<const Variable*> cycle;
            for (auto member = first; member != path.end(); ++member)
                cycle.push_back(member->variable);
            cycle.push_back(variable);
            return cycle;
        }
        if (entered.insert(variable).second)
            path.push_back({variable, variables_in(variable->value), 0});
    }
    return {};
}

std::string VariableExpansion::names_of(const std::vector<const Variable*>& chain) {
    std::string names;
    for (std::size_t i = 0; i < chain.size() && i < MAX_NAMES_SHOWN; ++i)
        names += (i == 0 ? "" : " -> ") + chain[i]->name;
    return chain.size() > MAX_NAMES_SHOWN ? names + " -> ..." : names;
}

} // namespace ocio
