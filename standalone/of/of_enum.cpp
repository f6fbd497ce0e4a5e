#include "host/of/of_enum.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/event/event_ids.h"
#include "standalone/core/class_destructor.h"

namespace {

constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

} // namespace

struct OfEnum::State {
    State(OfEnum& enumeration, const CoreString& name, unsigned int invalid_value)
        : enumeration(enumeration), name(name), invalid_value(invalid_value) {}

    OfEnum& enumeration;
    CoreString name;
    unsigned int invalid_value;
    CoreString separator;
    unsigned int sleep_depth = 0;
    bool changed_asleep = false;
    unsigned int change_count = 0;
    unsigned long long revision = 0;

    std::vector<CoreString> labels;
    std::vector<unsigned int> values;
    std::unordered_map<std::string, unsigned int> first_positions;

    /// Saves growing step by step where nothing is listed yet.
    void make_room(unsigned int count) {
        if (!labels.empty())
            return;
        labels.reserve(count);
        values.reserve(count);
        first_positions.reserve(count);
    }

    void add(const CoreString& label, unsigned int value) {
        first_positions.emplace(label.view(), static_cast<unsigned int>(labels.size()));
        labels.push_back(label);
        values.push_back(value);
    }

    void note_change() {
        ++revision;
        if (sleep_depth > 0)
            changed_asleep = true;
        else
            tell_observers();
    }

    void tell_observers() {
        ++change_count;
        enumeration.raise_event(EVT_ID_OF_ENUM_CHANGE);
    }

    unsigned int get_value(unsigned int position) const {
        return position < values.size() ? values[position] : invalid_value;
    }
};

OfEnum::OfEnum(const CoreString& name, const unsigned int& invalid_value)
    : state(std::make_unique<State>(*this, name, invalid_value)) {}

OfEnum::~OfEnum() = default;

const CoreClassInfo& OfEnum::get_class_info() const {
    return class_info();
}

const CoreClassInfo& OfEnum::class_info() {
    static const CoreClassInfo& info =
        CoreClassInfo::new_class("OfEnum", destroy_object<OfEnum>, EventObject::class_info(), nullptr);
    return info;
}

const CoreString& OfEnum::get_name() const {
    return state->name;
}

const unsigned int& OfEnum::get_invalid_value() const {
    return state->invalid_value;
}

unsigned long long OfEnum::get_revision() const {
    return state->revision;
}

void OfEnum::asleep() {
    ++state->sleep_depth;
}

void OfEnum::awake(const bool& notify) {
    if (state->sleep_depth == 0 || --state->sleep_depth > 0)
        return;
    const bool changed = std::exchange(state->changed_asleep, false);
    if (changed && notify)
        state->tell_observers();
}

bool OfEnum::is_asleep() const {
    return state->sleep_depth > 0;
}

unsigned int OfEnum::get_change_count() const {
    return state->change_count;
}

void OfEnum::remove_all_values() {
    if (state->labels.empty())
        return;
    state->labels.clear();
    state->values.clear();
    state->first_positions.clear();
    state->note_change();
}

void OfEnum::add_value(const CoreString& label, const unsigned int& value) {
    state->add(label, value);
    state->note_change();
}

void OfEnum::add_values(const CoreBasicArray<CoreString>& labels,
                        const CoreBasicArray<unsigned int>& values) {
    const unsigned int count = std::min(labels.get_count(), values.get_count());
    state->make_room(count);
    for (unsigned int i = 0; i < count; ++i)
        state->add(labels[i], values[i]);
    if (count > 0)
        state->note_change();
}

void OfEnum::set_separator(const char& separator) {
    state->separator = CoreString(std::string_view(&separator, 1));
    ++state->revision;
}

const CoreString& OfEnum::get_separator() const {
    return state->separator;
}

unsigned int OfEnum::get_value_count() const {
    return static_cast<unsigned int>(state->values.size());
}

unsigned int OfEnum::find_label_index(const CoreBasicString& label) const {
    const auto found = state->first_positions.find(std::string(label.view()));
    return found == state->first_positions.end() ? NOT_FOUND : found->second;
}

const CoreString& OfEnum::get_label(const unsigned int& index) const {
    return index < state->labels.size() ? state->labels[index] : CoreString::get_null_string();
}

unsigned int OfEnum::get_value(const CoreString& label) const {
    return state->get_value(find_label_index(label));
}

unsigned int OfEnum::get_value_from_label(const CoreString& label) const {
    return get_value(label);
}

unsigned int OfEnum::get_value_by_index(const unsigned int& index) const {
    return state->get_value(index);
}
