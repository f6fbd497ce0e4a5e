#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "diagnostics/diagnostic.h"
#include "image/color_description.h"
#include "image/color_layer.h"
#include "image/compression.h"
#include "image/format_abilities.h"
#include "image/pixel_depth.h"
#include "image/quantization.h"

namespace image {

/// Whether color is divided by alpha before the conversion and multiplied again after it.
enum class AlphaRule {
    AS_THE_FILE_SAYS, ///< If the file is premultiplied.
    DIVIDE,
    DO_NOT_DIVIDE
};

/// Options for the output of a conversion.
struct OutputOptions {
    PixelDepth depth;        ///< Of color and alpha; unknown for the input's or, in DPX, the usual one.
    bool dithers = false;    ///< Add noise before rounding to 8 or 10 bits; an error for other depths.
    Compression compression; ///< Of the whole file.
    AlphaRule alpha_rule = AlphaRule::AS_THE_FILE_SAYS;
    ColorDescription colors;           ///< Of the output.
    bool keeps_space = false;          ///< The output has the color space of the input.
    bool neutrals_stay_neutral = true; ///< Gray images stay gray; else they become red, green and blue.
};

/// Source of one channel of the output.
struct PlannedChannel {
    int source;    ///< Channel of the input.
    int layer;     ///< Position in `PartPlan::layers`; ColorLayer::NONE for data.
    int component; ///< 0 to 3: red, green, blue, alpha.
};

/// How to write one part of an image.
struct PartPlan {
    OIIO::ImageSpec spec;           ///< Requested spec; the format may change the types.
    std::vector<ColorLayer> layers; ///< To convert.
    std::vector<PlannedChannel> channels;
    bool divides_by_alpha = false;    ///< Before the conversion.
    bool multiplies_by_alpha = false; ///< After the conversion, except where alpha is 0.
    bool associates_alpha = false;    ///< After the conversion, to store straight color premultiplied.
    bool straightens_alpha = false;   ///< After the conversion, to store premultiplied color straight.
    Quantization quantization;        ///< After that; set when the depth of the file is known.
    diagnostics::Diagnostics notes;   ///< What the output format does not support; without a file.

    /// Position of the part that contains the alpha of layers without one in their own part; ColorLayer::NONE
    /// if every layer has its own.
    int find_alpha_part() const;
};

/// Plans how to write a part with spec `input`, read from a file of format `input_format`, to a file with
/// `abilities`. `layers` are those to convert, of find_layers; all other channels are data. A format without
/// layers gets the color of the first one.
PartPlan plan_part(const OIIO::ImageSpec& input, std::vector<ColorLayer> layers,
                   const std::string& input_format, const FormatAbilities& abilities,
                   const OutputOptions& options);

} // namespace image
