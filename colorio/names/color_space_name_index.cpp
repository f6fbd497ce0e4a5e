#include "colorio/names/color_space_name_index.h"

#include "colorio/color_io_constants.h"
#include "host/of/of_enum.h"

namespace {

unsigned int find_position(const std::unordered_map<std::string, unsigned int>& positions,
                           const CoreString& name) {
    const auto found = positions.find(std::string(name.view()));
    return found == positions.end() ? NOT_FOUND : found->second;
}

} // namespace

ColorSpaceNameIndex::ColorSpaceNameIndex(const OfEnum& labels)
    : source(&labels), revision(labels.get_revision()), separator(*labels.get_separator().get_data()) {
    const unsigned int count = labels.get_value_count();
    last_by_folded_name.reserve(count);
    first_by_name.reserve(count);
    for (unsigned int position = 0; position < count; ++position) {
        const CoreString name = get_bare_name(labels.get_label(position));
        first_by_name.emplace(name.view(), position);
        last_by_folded_name[std::string(name.get_lower_case().view())] = position;
    }
}

bool ColorSpaceNameIndex::is_current(const OfEnum& labels) const {
    return source == &labels && revision == labels.get_revision();
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
