#include "host/parser/parser_entry.h"

#include <string>
#include <variant>
#include <vector>

#include "host/parser/parser_group.h"

struct ParserEntry::State {
    using Group = std::unique_ptr<ParserGroup>;
    using Value = std::variant<CoreString, int, double, Group>;

    CoreString name;
    unsigned int line = 0;
    std::vector<Value> values;

    // Value `index` when it is a `Kind`, else null.
    template <class Kind>
    const Kind* get(unsigned int index) const {
        return index < values.size() ? std::get_if<Kind>(&values[index]) : nullptr;
    }
};

ParserEntry::ParserEntry(const CoreString& name) : state(std::make_unique<State>()) {
    state->name = name;
}

ParserEntry::~ParserEntry() = default;

const CoreString& ParserEntry::get_name() const {
    return state->name;
}

unsigned int ParserEntry::get_line() const {
    return state->line;
}

void ParserEntry::set_line(unsigned int line) {
    state->line = line;
}

void ParserEntry::reset() {
    state->values.clear();
}

unsigned int ParserEntry::get_value_count() const {
    return static_cast<unsigned int>(state->values.size());
}

bool ParserEntry::is_group() const {
    return is_value_group(0);
}

bool ParserEntry::is_value_group(const unsigned int& index) const {
    return state->get<State::Group>(index) != nullptr;
}

bool ParserEntry::is_value_string(const unsigned int& index) const {
    return state->get<CoreString>(index) != nullptr;
}

bool ParserEntry::is_value_int(const unsigned int& index) const {
    return state->get<int>(index) != nullptr;
}

bool ParserEntry::is_value_double(const unsigned int& index) const {
    return state->get<double>(index) != nullptr;
}

ParserGroup* ParserEntry::get_group(const unsigned int& index) {
    const auto* group = state->get<State::Group>(index);
    return group ? group->get() : nullptr;
}

const ParserGroup* ParserEntry::get_group(const unsigned int& index) const {
    const auto* group = state->get<State::Group>(index);
    return group ? group->get() : nullptr;
}

CoreString ParserEntry::get_string(const unsigned int& index) const {
    if (const auto* text = state->get<CoreString>(index))
        return *text;
    if (const int* integer = state->get<int>(index))
        return CoreString::from_int(*integer);
    if (const double* real = state->get<double>(index))
        return CoreString::from_double(*real);
    return {};
}

int ParserEntry::get_int(const unsigned int& index) const {
    const int* integer = state->get<int>(index);
    return integer ? *integer : 0;
}

double ParserEntry::get_double(const unsigned int& index) const {
    if (const double* real = state->get<double>(index))
        return *real;
    return get_int(index);
}

ParserGroup* ParserEntry::add_group(ParserGroup* parent) {
    auto group = std::make_unique<ParserGroup>(parent);
    ParserGroup* const added = group.get();
    state->values.emplace_back(std::move(group));
    return added;
}

void ParserEntry::add_string(const CoreString& value) {
    state->values.emplace_back(value);
}

void ParserEntry::add_int(const int& value) {
    state->values.emplace_back(value);
}

void ParserEntry::add_double(const double& value) {
    state->values.emplace_back(value);
}
