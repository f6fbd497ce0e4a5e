#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

/// Writes ASC CDL documents with every digit, by OpenColorIO's own writer; what hosts save through the
/// manager has one decimal.
class COLORIO_API ColorIOCdlWriter {
public:
    /// A color correction, in the numbers to be written.
    struct Correction {
        CoreString id;
        double slope[3];
        double offset[3];
        double power[3];
        double saturation;
    };

    /// The text of a document: a collection, or one ColorCorrection, which needs exactly one correction.
    /// Empty when OpenColorIO refuses the numbers; the cause is logged at level 1 and reported.
    static CoreString write(const CoreVector<Correction>& corrections, bool is_collection);
};
