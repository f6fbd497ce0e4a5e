#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/color_layer.h"
#include "image/format_abilities.h"

namespace image {

/// Whether color is divided by alpha before the conversion and multiplied again after it.
enum class AlphaRule {
    AS_THE_FILE_SAYS, ///< If the file is premultiplied.
    DIVIDE,
    DO_NOT_DIVIDE
};

/// Options for the output of a conversion.
struct OutputWishes {
    OIIO::TypeDesc depth = OIIO::TypeUnknown; ///< Type of color and alpha; unknown for the input's types.
    AlphaRule alpha_rule = AlphaRule::AS_THE_FILE_SAYS;
    std::string color_space_tag; ///< Value of the attribute "oiio:ColorSpace"; empty keeps color metadata.
    bool keeps_space = false;    ///< The output has the color space of the input.
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
    std::vector<std::string> notes;   ///< What the output format does not support.
};

/// Plans how to write a part with spec `input`, read from a file of format `input_format`, to a file with
/// `abilities`. `layers` are those to convert, of find_layers; all other channels are data. A format without
/// layers gets the color of the first one.
PartPlan plan_part(const OIIO::ImageSpec& input, std::vector<ColorLayer> layers,
                   const std::string& input_format, const FormatAbilities& abilities,
                   const OutputWishes& wishes);

} // namespace image
