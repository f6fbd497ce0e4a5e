#include "host/parser/parser_group.h"

#include <string>
#include <unordered_map>
#include <vector>

#include "host/parser/parser_entry.h"

struct ParserGroup::State {
    ParserGroup* parent = nullptr;
    std::vector<std::unique_ptr<ParserEntry>> entries;
    std::unordered_map<std::string, ParserEntry*> first_by_name;

    ParserEntry* get(unsigned int index) const {
        return index < entries.size() ? entries[index].get() : nullptr;
    }
    ParserEntry* find(const CoreBasicString& name) const {
        const auto found = first_by_name.find(std::string(name.view()));
        return found == first_by_name.end() ? nullptr : found->second;
    }
};

ParserGroup::ParserGroup(ParserGroup* parent) : state(std::make_unique<State>()) {
    state->parent = parent;
}

ParserGroup::~ParserGroup() = default;

ParserGroup* ParserGroup::get_parent() const {
    return state->parent;
}

unsigned int ParserGroup::get_entry_count() const {
    return static_cast<unsigned int>(state->entries.size());
}

ParserEntry* ParserGroup::get_entry(const unsigned int& index) {
    return state->get(index);
}

const ParserEntry* ParserGroup::get_entry(const unsigned int& index) const {
    return state->get(index);
}

ParserEntry* ParserGroup::find_entry(const CoreBasicString& name) {
    return state->find(name);
}

const ParserEntry* ParserGroup::find_entry(const CoreBasicString& name) const {
    return state->find(name);
}

ParserEntry* ParserGroup::add_entry(const CoreString& name, const unsigned long& line, const unsigned long&) {
    state->entries.push_back(std::make_unique<ParserEntry>(name));
    ParserEntry* const added = state->entries.back().get();
    added->set_line(static_cast<unsigned int>(line));
    state->first_by_name.emplace(name.view(), added);
    return added;
}
