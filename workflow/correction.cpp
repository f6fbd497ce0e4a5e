#include "workflow/correction.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <fmt/format.h>

#include "colorio/color_io_cdl_ranges.h"

namespace workflow {

namespace {

/// Both record types use the same member names.
template <class From, class To>
void copy_numbers(const From& from, To& to) {
    std::copy(std::begin(from.slope), std::end(from.slope), to.slope);
    std::copy(std::begin(from.offset), std::end(from.offset), to.offset);
    std::copy(std::begin(from.power), std::end(from.power), to.power);
    to.saturation = from.saturation;
}

std::string find_invalid(CDLNumber kind, const char* name, const float* values, std::size_t count) {
    const float* const end = values + count;
    const float* const found =
        std::find_if_not(values, end, [kind](float value) { return is_valid_CDL_number(kind, value); });
    if (found == end)
        return "";
    const char* const rule = !std::isfinite(*found)     ? "is not finite"
                             : kind == CDLNumber::POWER ? "is not greater than 0"
                                                        : "is negative";
    return fmt::format("{} {} {}", name, *found, rule);
}

} // namespace

std::string find_invalid_number(const Correction& correction) {
    const std::string found[] = {
        find_invalid(CDLNumber::SLOPE, "slope", correction.slope, std::size(correction.slope)),
        find_invalid(CDLNumber::OFFSET, "offset", correction.offset, std::size(correction.offset)),
        find_invalid(CDLNumber::POWER, "power", correction.power, std::size(correction.power)),
        find_invalid(CDLNumber::SATURATION, "saturation", &correction.saturation, 1)};
    const auto* first =
        std::find_if(std::begin(found), std::end(found), [](const auto& text) { return !text.empty(); });
    return first != std::end(found) ? *first : "";
}

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

} // namespace workflow
