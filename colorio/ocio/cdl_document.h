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

/// The document that the library writes, every digit kept: a collection, or the one correction there is.
/// Throws when a document of one correction is to hold none or several.
std::string write_cdl_document(const std::vector<CdlNumbers>& corrections, bool is_collection);

} // namespace ocio
