#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

/// Writes ASC CDL documents in full precision, with OpenColorIO's writer. (Documents that hosts write with
/// ColorIOManager::create_XML_from_CDL have one decimal.)
class COLORIO_API ColorIOCdlWriter {
public:
    /// A color correction; triples are red, green, blue.
    struct Correction {
        CoreString id;     ///< May be empty.
        double slope[3];   ///< Neutral: 1.
        double offset[3];  ///< Neutral: 0.
        double power[3];   ///< Above 0; neutral: 1.
        double saturation; ///< Neutral: 1.
    };

    /// The text of a document: a ColorCorrectionCollection, or a ColorCorrection for exactly one correction.
    /// Empty when OpenColorIO refuses the numbers; the reason is logged at level 1 and reported to
    /// ColorIODiagnostics.
    static CoreString write(const CoreVector<Correction>& corrections, bool is_collection);
};
