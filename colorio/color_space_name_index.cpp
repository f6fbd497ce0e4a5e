#include "colorio/color_space_name_index.h"

#include "colorio/color_io_constants.h"
#include "host/of/of_enum.h"

namespace {

unsigned int find_position(const std::unordered_map<std::string, unsigned int>& positions,
                           const CoreString& name) {
    const auto found = positions.find(name.get_data());
    return found == positions.end() ? NOT_FOUND : found->second;
}

} // namespace

ColorSpaceNameIndex::ColorSpaceNameIndex(const OfEnum& labels)
    : count(labels.get_value_count()), separator(labels.get_separator().get_data()[0]) {
    last_by_folded_name.reserve(count);
    first_by_name.reserve(count);
    for (unsigned int position = 0; position < count; ++position) {
        const CoreString name = get_bare_name(labels.get_label(position));
        first_by_name.emplace(name.get_data(), position);
        last_by_folded_name[name.get_lower_case().get_data()] = position;
    }
}

bool ColorSpaceNameIndex::is_current(const OfEnum& labels) const {
    return labels.get_value_count() == count && labels.get_separator().get_data()[0] == separator;
}

unsigned int ColorSpaceNameIndex::find_last_ignoring_case(const CoreString& name) const {
    return find_position(last_by_folded_name, get_bare_name(name).get_lower_case());
}

unsigned int ColorSpaceNameIndex::find_first_exact(const CoreString& name) const {
    return find_position(first_by_name, name);
}

CoreString ColorSpaceNameIndex::get_bare_name(const CoreBasicString& label) const {
    return separator == '\0' ? CoreString(label) : CoreString::after_first(label, separator);
}
