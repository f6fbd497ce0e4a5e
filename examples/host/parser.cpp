#include <fstream>
#include <variant>
#include <vector>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"

struct ParserEntry::State {
    using Value = std::variant<CoreString, int, double, std::unique_ptr<ParserGroup>>;
    CoreString name;
    std::vector<Value> values;

    template <class Kind>
    const Kind* get(unsigned int index) const {
        return index < values.size() ? std::get_if<Kind>(&values[index]) : nullptr;
    }
    ParserGroup* get_group(unsigned int index) const {
        const auto* const group = get<std::unique_ptr<ParserGroup>>(index);
        return group ? group->get() : nullptr;
    }
};

ParserEntry::ParserEntry(const CoreString& name) : state(new State{name, {}}) {}
ParserEntry::~ParserEntry() = default;
const CoreString& ParserEntry::get_name() const {
    return state->name;
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
    return state->get_group(index);
}
bool ParserEntry::is_value_string(const unsigned int& index) const {
    return state->get<CoreString>(index);
}

ParserGroup* ParserEntry::get_group(const unsigned int& index) {
    return state->get_group(index);
}
const ParserGroup* ParserEntry::get_group(const unsigned int& index) const {
    return state->get_group(index);
}

CoreString ParserEntry::get_string(const unsigned int& index) const {
    if (const auto* const text = state->get<CoreString>(index))
        return *text;
    if (const int* const integer = state->get<int>(index))
        return CoreString(std::to_string(*integer).c_str());
    const double* const real = state->get<double>(index);
    return real ? CoreString::from_float(static_cast<float>(*real)) : CoreString();
}

int ParserEntry::get_int(const unsigned int& index) const {
    const int* const integer = state->get<int>(index);
    return integer ? *integer : 0;
}

double ParserEntry::get_double(const unsigned int& index) const {
    const double* const real = state->get<double>(index);
    return real ? *real : get_int(index);
}

ParserGroup* ParserEntry::add_group(ParserGroup* parent) {
    state->values.emplace_back(std::make_unique<ParserGroup>(parent));
    return state->get_group(get_value_count() - 1);
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

struct ParserGroup::State {
    std::vector<std::unique_ptr<ParserEntry>> entries;
};

ParserGroup::ParserGroup(ParserGroup*) : state(new State) {}
ParserGroup::~ParserGroup() = default;
unsigned int ParserGroup::get_entry_count() const {
    return static_cast<unsigned int>(state->entries.size());
}

const ParserEntry* ParserGroup::get_entry(const unsigned int& index) const {
    return index < state->entries.size() ? state->entries[index].get() : nullptr;
}

const ParserEntry* ParserGroup::find_entry(const CoreBasicString& name) const {
    for (const auto& entry : state->entries)
        if (entry->get_name() == name)
            return entry.get();
    return nullptr;
}

ParserEntry* ParserGroup::add_entry(const CoreString& name, const unsigned long&, const unsigned long&) {
    state->entries.push_back(std::make_unique<ParserEntry>(name));
    return state->entries.back().get();
}

struct ParserFile::State {
    std::unique_ptr<ParserGroup> root;
    CoreString error;
};

ParserFile::ParserFile() : state(new State{std::make_unique<ParserGroup>(nullptr), {}}) {}
ParserFile::~ParserFile() = default;
const CoreString& ParserFile::get_error() const {
    return state->error;
}
ParserGroup& ParserFile::get_root() {
    return *state->root;
}

// Lines "[GROUP]" and "NAME=TEXT"; blank lines are ignored. The module requires no type or version of a file.
bool ParserFile::read(const CoreString& path, const CoreString&, const CoreString&) {
    auto root = std::make_unique<ParserGroup>(nullptr);
    std::ifstream stream(path.get_data());
    state->error = stream ? CoreString() : path + ": cannot be opened";
    ParserGroup* group = root.get();
    std::string line;
    for (unsigned int number = 1; std::getline(stream, line); ++number) {
        const CoreString text(line.c_str());
        if (text.start_with("[") && line.back() == ']')
            group = root->add_entry(CoreString(line.substr(1, line.size() - 2).c_str()), number, 1)
                        ->add_group(root.get());
        else if (line.find('=') != line.npos)
            group->add_entry(CoreString::before_first(text, '='), number, 1)
                ->add_string(CoreString::after_first(text, '='));
        else if (!line.empty())
            state->error = path + ":" + CoreString::from_unsigned(number) + ": neither a group nor a value";
    }
    state->root = state->error.is_empty() ? std::move(root) : std::make_unique<ParserGroup>(nullptr);
    return state->error.is_empty();
}
