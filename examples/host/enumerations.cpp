#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "host/of/of_object_factory.h"

struct OfEnum::State {
    CoreString name, separator;
    unsigned int invalid_value = 0, sleeps = 0;
    bool changed_asleep = false;
    unsigned long long revision = 0;
    std::vector<std::pair<CoreString, unsigned int>> entries;
    std::unordered_map<std::string, unsigned int> positions; // of the first entry with a label

    void add(const CoreString& label, unsigned int value) {
        positions.emplace(label.view(), static_cast<unsigned int>(entries.size()));
        entries.emplace_back(label, value);
    }
    void change(OfEnum& owner) {
        ++revision;
        changed_asleep = sleeps > 0;
        if (!changed_asleep)
            owner.raise_event(EVT_ID_OF_ENUM_CHANGE);
    }
};

OfEnum::OfEnum(const CoreString& name, const unsigned int& invalid_value) : state(new State) {
    state->name = name;
    state->invalid_value = invalid_value;
}
OfEnum::~OfEnum() = default;

const unsigned int& OfEnum::get_invalid_value() const {
    return state->invalid_value;
}
unsigned long long OfEnum::get_revision() const {
    return state->revision;
}
void OfEnum::asleep() {
    ++state->sleeps;
}

void OfEnum::awake(const bool& notify) {
    if (state->sleeps == 0 || --state->sleeps > 0)
        return;
    if (std::exchange(state->changed_asleep, false) && notify)
        raise_event(EVT_ID_OF_ENUM_CHANGE);
}

void OfEnum::remove_all_values() {
    state->entries.clear();
    state->positions.clear();
    state->change(*this);
}

void OfEnum::add_value(const CoreString& label, const unsigned int& value) {
    state->add(label, value);
    state->change(*this);
}

void OfEnum::add_values(const CoreBasicArray<CoreString>& labels,
                        const CoreBasicArray<unsigned int>& values) {
    for (unsigned int i = 0; i < std::min(labels.get_count(), values.get_count()); ++i)
        state->add(labels[i], values[i]);
    state->change(*this);
}

void OfEnum::set_separator(const char& separator) {
    state->separator = CoreString(std::string_view(&separator, 1));
    ++state->revision;
}

const CoreString& OfEnum::get_separator() const {
    return state->separator;
}
unsigned int OfEnum::get_value_count() const {
    return static_cast<unsigned int>(state->entries.size());
}

unsigned int OfEnum::find_label_index(const CoreBasicString& label) const {
    const auto found = state->positions.find(std::string(label.view()));
    return found == state->positions.end() ? 0xFFFFFFFF : found->second;
}

const CoreString& OfEnum::get_label(const unsigned int& index) const {
    static const CoreString none;
    return index < get_value_count() ? state->entries[index].first : none;
}

unsigned int OfEnum::get_value(const CoreString& label) const {
    const unsigned int index = find_label_index(label);
    return index < get_value_count() ? state->entries[index].second : state->invalid_value;
}

unsigned int OfEnum::get_value_from_label(const CoreString& label) const {
    return get_value(label);
}

struct OfObjectFactory::State {
    std::vector<std::pair<CoreString, std::unique_ptr<OfEnum>>> enums;
};

OfObjectFactory::OfObjectFactory() : state(new State) {}
OfObjectFactory::~OfObjectFactory() = default;

OfEnum* OfObjectFactory::add_enum(const CoreString& name, const unsigned int& invalid_value) {
    state->enums.emplace_back(name, std::make_unique<OfEnum>(name, invalid_value));
    return state->enums.back().second.get();
}

OfEnum* OfObjectFactory::get_enum(const CoreBasicString& name) const {
    for (auto named = state->enums.rbegin(); named != state->enums.rend(); ++named)
        if (named->first == name)
            return named->second.get(); // the last one of that name
    return nullptr;
}
