#pragma once

#include <string>

#include "colorio/color_io_manager.h"
#include "colorio/ocio/types.h"

// Small inputs for custom color spaces and CDLs.

/// A .spi1d LUT of two entries: `from` to `to` become `from` * `factor` to `to` * `factor`.
inline std::string lut_text(double factor, double from = -64, double to = 64) {
    return "Version 1\nFrom " + std::to_string(from) + " " + std::to_string(to) +
           "\nLength 2\nComponents 1\n{\n        " + std::to_string(from * factor) + "\n        " +
           std::to_string(to * factor) + "\n}\n";
}

/// A ColorCorrection element with one number for the three channels.
inline std::string correction_text(const std::string& id, const std::string& slope,
                                   const std::string& offset = "0", const std::string& power = "1",
                                   const std::string& saturation = "1") {
    auto thrice = [](const std::string& number) { return number + " " + number + " " + number; };
    return "<ColorCorrection id=\"" + id + "\"><SOPNode><Slope>" + thrice(slope) + "</Slope><Offset>" +
           thrice(offset) + "</Offset><Power>" + thrice(power) + "</Power></SOPNode><SATNode><Saturation>" +
           saturation + "</Saturation></SATNode></ColorCorrection>";
}

/// A collection of such elements.
inline std::string collection_text(const std::string& corrections) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\">" +
           corrections + "</ColorCorrectionCollection>\n";
}

/// Record of a custom color space: 32-bit floats, uniform allocation of [-1, 3].
inline ColorIOManager::ColorSpaceDef space_record(const std::string& name, const std::string& lut_file,
                                                  const std::string& cdl_file = "",
                                                  const std::string& cccid = "") {
    ColorIOManager::ColorSpaceDef record{};
    record.name = name.c_str();
    record.lut_file = lut_file.c_str();
    record.cdl_file = cdl_file.c_str();
    record.cccid = cccid.c_str();
    record.bit_depth = static_cast<unsigned int>(ocio::BIT_DEPTH_F32);
    record.allocation = static_cast<unsigned int>(ocio::ALLOCATION_UNIFORM);
    record.allocation_vars[0] = -1;
    record.allocation_vars[1] = 3;
    record.allocation_vars[2] = 0;
    record.is_builtin = false;
    return record;
}
