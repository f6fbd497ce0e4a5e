#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_manager.h"

namespace workflow {

/// A color correction (ASC CDL) of a document. Arrays are red, green, blue.
struct Correction {
    std::string id;
    std::vector<std::string> descriptions;
    float slope[3] = {1.0f, 1.0f, 1.0f};
    float offset[3] = {0.0f, 0.0f, 0.0f};
    float power[3] = {1.0f, 1.0f, 1.0f};
    float saturation = 1.0f;
    std::vector<std::string> unread_elements; ///< Names of ignored elements, such as "ASC_SOP".
    /// Of a file that was named without an id: the ids of the color corrections after this one, which is the
    /// first, as OpenColorIO reads such a file.
    std::vector<std::string> later_ids;
    /// False when an element name is spelled in a way that OpenColorIO does not accept: "SopNode".
    bool has_usual_names = true;
    unsigned int line = 0; ///< Of its ColorCorrection element in the file, from 1; 0 if it is of no file.
};

/// A record of the module with these numbers and no file, named `name`.
ColorIOManager::ColorDecisionListDef make_cdl_record(const Correction& correction, const std::string& name);
/// A description of the first number that the ASC CDL does not allow: "slope -1.5 is negative". Empty when
/// all are valid: finite, slope and saturation at least 0, power greater than 0.
std::string find_invalid_number(const Correction& correction);
/// The color correction of a record of the module; its name becomes the id.
Correction make_correction(const ColorIOManager::ColorDecisionListDef& record);

} // namespace workflow
