#pragma once

#include <string>
#include <unordered_map>

#include "host/core/core_string.h"

class OfEnum;

/// Finds positions of the enumeration "color_space" by the part of a label after its family.
class ColorSpaceNameIndex {
public:
    explicit ColorSpaceNameIndex(const OfEnum& labels);

    /// False for another enumeration, and once the indexed one was edited.
    bool is_current(const OfEnum& labels) const;
    /// Last position whose bare name equals that of `name` when case is ignored; NOT_FOUND when none does.
    unsigned int find_last_ignoring_case(const CoreString& name) const;
    /// First position whose bare name is exactly `name`; NOT_FOUND when none is.
    unsigned int find_first_exact(const CoreString& name) const;

private:
    using Positions = std::unordered_map<std::string, unsigned int>;

    CoreString get_bare_name(const CoreBasicString& label) const;

    const OfEnum* source;
    unsigned long long revision;
    char separator; ///< NUL when labels are not split.
    Positions last_by_folded_name;
    Positions first_by_name;
};
