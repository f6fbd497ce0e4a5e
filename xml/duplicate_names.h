#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace xml {

/// Result of `find` for distinct names.
constexpr std::size_t NO_DUPLICATE = static_cast<std::size_t>(-1);

/// Finds repeated names in a list; reuses its storage between calls.
class DuplicateFinder {
public:
    /// Position of the first name that equals an earlier one, or NO_DUPLICATE. Takes n log n comparisons.
    std::size_t find(const std::vector<std::string_view>& names);

private:
    std::vector<std::size_t> by_name;
};

} // namespace xml
