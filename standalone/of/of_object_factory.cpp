#include "host/of/of_object_factory.h"

#include <string>
#include <unordered_map>
#include <vector>

#include "host/of/of_enum.h"

struct OfObjectFactory::State {
    std::vector<std::unique_ptr<OfEnum>> enums;
    std::unordered_map<std::string, OfEnum*> enums_by_name;
};

OfObjectFactory::OfObjectFactory() : state(std::make_unique<State>()) {}

OfObjectFactory::~OfObjectFactory() = default;

OfEnum* OfObjectFactory::add_enum(const CoreString& name, const unsigned int& invalid_value) {
    state->enums.push_back(std::make_unique<OfEnum>(name, invalid_value));
    OfEnum* const added = state->enums.back().get();
    state->enums_by_name[std::string(name.view())] = added;
    return added;
}

OfEnum* OfObjectFactory::get_enum(const CoreBasicString& name) const {
    const auto found = state->enums_by_name.find(std::string(name.view()));
    return found == state->enums_by_name.end() ? nullptr : found->second;
}
