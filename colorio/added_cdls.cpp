#include "colorio/added_cdls.h"

#include <cstring>

namespace {

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

/// Bit for bit, so that a record that holds NaN equals itself.
bool have_equal_numbers(const ColorDecisionListDef& a, const ColorDecisionListDef& b) {
    return std::memcmp(a.slope, b.slope, sizeof a.slope) == 0 &&
           std::memcmp(a.offset, b.offset, sizeof a.offset) == 0 &&
           std::memcmp(a.power, b.power, sizeof a.power) == 0 &&
           std::memcmp(&a.saturation, &b.saturation, sizeof a.saturation) == 0;
}

std::string get_key(const ColorDecisionListDef& def) {
    return def.name.get_lower_case().get_data();
}

} // namespace

bool AddedCDLs::holds(const ColorDecisionListDef& def, bool from_file) const {
    const auto found = sources.find(get_key(def));
    if (found == sources.end() || found->second.from_file != from_file)
        return false;
    const ColorDecisionListDef& held = found->second.def;
    return held.name == def.name && held.file == def.file && held.cccid == def.cccid &&
           have_equal_numbers(held, def);
}

void AddedCDLs::remember(const ColorDecisionListDef& def, bool from_file) {
    sources.insert_or_assign(get_key(def), Source{def, from_file});
}
