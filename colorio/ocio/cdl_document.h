#pragma once

#include <string>
#include <vector>

namespace ocio {

/// One correction of an ASC CDL document.
struct CdlNumbers {
    std::string id;
    double slope[3];
    double offset[3];
    double power[3];
    double saturation;
};

/// The document as OpenColorIO writes it, in full precision: a collection, or a single correction. Throws
/// when a document of a single correction is given none or several.
std::string write_cdl_document(const std::vector<CdlNumbers>& corrections, bool is_collection);

} // namespace ocio
