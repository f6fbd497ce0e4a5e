#include "xml/duplicate_names.h"

#include <algorithm>
#include <numeric>

namespace xml {

namespace {

// Below this the pairwise comparison is quicker than sorting.
constexpr std::size_t FEW_NAMES = 12;

std::size_t find_pairwise(const std::vector<std::string_view>& names) {
    for (std::size_t later = 1; later < names.size(); ++later) {
        const auto end = names.begin() + static_cast<std::ptrdiff_t>(later);
        if (std::find(names.begin(), end, names[later]) != end)
            return later;
    }
    return NO_DUPLICATE;
}

} // namespace

std::size_t DuplicateFinder::find(const std::vector<std::string_view>& names) {
    if (names.size() <= FEW_NAMES)
        return find_pairwise(names);
    by_name.resize(names.size());
    std::iota(by_name.begin(), by_name.end(), std::size_t{0});
    std::sort(by_name.begin(), by_name.end(), [&](std::size_t left, std::size_t right) {
        const int order = names[left].compare(names[right]);
        return order != 0 ? order < 0 : left < right;
    });
    std::size_t first = NO_DUPLICATE;
    for (std::size_t i = 1; i < by_name.size(); ++i) {
        if (names[by_name[i - 1]] == names[by_name[i]])
            first = std::min(first, by_name[i]);
    }
    return first;
}

} // namespace xml
