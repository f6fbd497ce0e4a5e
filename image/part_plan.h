#pragma once

#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/color_group.h"
#include "image/format_abilities.h"

namespace image {

/// Whether color is divided by alpha for the conversion and multiplied again after it.
enum class AlphaRule {
    AS_THE_FILE_SAYS, ///< Where the file keeps color multiplied by alpha.
    DIVIDE,
    DO_NOT_DIVIDE
};

/// What is wanted of a written image.
struct OutputWishes {
    OIIO::TypeDesc depth = OIIO::TypeUnknown; ///< Of color and alpha; unknown keeps the input's.
    AlphaRule alpha_rule = AlphaRule::AS_THE_FILE_SAYS;
    std::string color_space_tag; ///< Value of the attribute "oiio:ColorSpace"; empty leaves it as it is.
    bool keeps_space = false;    ///< The colors stay in the space that the input is in.
    bool neutrals_stay_neutral = true; ///< Gray images stay gray; else they become red, green and blue.
};

/// Where one channel of the written image comes from.
struct PlannedChannel {
    int source;    ///< Channel of the input.
    int group;     ///< Position among the color groups; ColorGroup::NONE for data.
    int component; ///< 0 to 3 in that group.
};

/// How one part of an image becomes a part of the written one.
struct PartPlan {
    OIIO::ImageSpec spec; ///< As asked of the format, which may still change the types.
    std::vector<ColorGroup> groups;
    std::vector<PlannedChannel> channels;
    bool divides_by_alpha = false;    ///< Before the conversion.
    bool multiplies_by_alpha = false; ///< After it.
    bool associates_alpha = false;    ///< After it, where the input's alpha was straight.
    bool straightens_alpha = false;   ///< After it, where the input's alpha was associated.
    std::vector<std::string> notes;   ///< What the user should know: what the format cannot keep.
};

/// Plans the writing of a part with spec `input` of a file of format `input_format`.
PartPlan plan_part(const OIIO::ImageSpec& input, const std::string& input_format,
                   const FormatAbilities& abilities, const OutputWishes& wishes);

} // namespace image
