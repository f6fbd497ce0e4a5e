#pragma once

#include "colorio/color_io_export.h"
#include "colorio/color_io_manager.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

/// Writes ASC CDL documents: a ColorCorrectionCollection, or a ColorCorrection for exactly one record. The
/// name of a record becomes the id and may be empty; its file is not used.
class COLORIO_API ColorIOCdlWriter {
public:
    /// The text of a document in full precision, by OpenColorIO's writer: each number has the fewest digits
    /// that read back as the same float. Empty when OpenColorIO refuses the numbers; the reason is logged at
    /// level 1 and reported to ColorIODiagnostics.
    static CoreString write(const CoreVector<ColorIOManager::ColorDecisionListDef>& records,
                            bool is_collection);

    /// Writes the file that ColorIOManager::create_XML_from_CDL writes, with one decimal; needs no manager.
    /// False when it cannot be written.
    static bool write_rounded(const CoreVector<ColorIOManager::ColorDecisionListDef>& records,
                              const CoreString& path, bool is_collection);
};
