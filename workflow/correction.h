#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_manager.h"

namespace workflow {

/// A color correction (ASC CDL) as documents hold it.
struct Correction {
    std::string id;
    std::vector<std::string> descriptions;
    float slope[3] = {1.0f, 1.0f, 1.0f};
    float offset[3] = {0.0f, 0.0f, 0.0f};
    float power[3] = {1.0f, 1.0f, 1.0f};
    float saturation = 1.0f;
    std::vector<std::string> unread_elements; ///< Of unknown names, such as "ASC_SOP".
    /// False when the document spells a name in a way that OpenColorIO does not accept: "SopNode".
    bool has_usual_names = true;
};

/// The module's record of the numbers, under `name`, without a file.
ColorIOManager::ColorDecisionListDef make_cdl_record(const Correction& correction, const std::string& name);
/// The first number that the ASC CDL does not allow, as "slope -1.5 is negative"; empty when all are valid.
std::string find_invalid_number(const Correction& correction);
/// The numbers of a record, its name as the id.
Correction make_correction(const ColorIOManager::ColorDecisionListDef& record);

} // namespace workflow
