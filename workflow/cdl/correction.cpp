#include "workflow/cdl/correction.h"

#include <algorithm>
#include <iterator>

namespace tool {

namespace {

/// Both kinds of record name their numbers alike.
template <class From, class To>
void copy_numbers(const From& from, To& to) {
    std::copy(std::begin(from.slope), std::end(from.slope), to.slope);
    std::copy(std::begin(from.offset), std::end(from.offset), to.offset);
    std::copy(std::begin(from.power), std::end(from.power), to.power);
    to.saturation = from.saturation;
}

} // namespace

ColorIOManager::ColorDecisionListDef make_cdl_record(const Correction& correction, const std::string& name) {
    ColorIOManager::ColorDecisionListDef record{};
    record.name = name.c_str();
    copy_numbers(correction, record);
    return record;
}

Correction make_correction(const ColorIOManager::ColorDecisionListDef& record) {
    Correction correction;
    correction.id = record.name.get_data();
    copy_numbers(record, correction);
    return correction;
}

} // namespace tool
