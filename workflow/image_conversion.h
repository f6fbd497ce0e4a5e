#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "image/part_plan.h"
#include "workflow/conversion.h"
#include "workflow/image_job.h"

namespace workflow {

/// The conversion of parts that are in another color space than the image by their tags.
struct PartConversion {
    TaggedSpace space;
    std::shared_ptr<const Conversion> conversion; ///< Null for data, which is left, and after a failure.
    diagnostics::Diagnostics failure; ///< Why there is none; an error only if the part is to be converted.
};

/// One conversion for each color space of `other_tags` (FileSpace), with the destination and the steps of
/// `request`.
std::vector<PartConversion> make_part_conversions(const Session& session, const ConversionRequest& request,
                                                  const std::vector<TaggedSpace>& other_tags);

/// Options of image conversions other than the color conversion.
struct ImageOptions {
    /// Type of the written colors and alpha: uint8, uint10, uint12, uint16, half or float; empty for the type
    /// of the input, or the nearest that the format supports; 10 bits for floats in DPX.
    std::string depth;
    bool dithers = false;           ///< As in OutputOptions.
    image::Compression compression; ///< As in OutputOptions.
    image::AlphaRule alpha_rule = image::AlphaRule::AS_THE_FILE_SAYS;
    LayerOptions layers;                                 ///< Which layers and parts to convert.
    std::string data_space;                              ///< As in ImageSettings.
    int threads = 0;                                     ///< Worker threads for one image; 0 for all cores.
    std::optional<std::vector<std::string>> source_tags; ///< As in ImageSettings.
    std::vector<std::vector<std::string>> part_tags;     ///< As in ImageSettings.
    bool is_strict = false;                              ///< As in ImageSettings.
    std::vector<PartConversion> parts;                   ///< Of those in other color spaces.
};

/// Settings for `convert_image` and `convert_sequence`. `conversion` must outlive them. Throws
/// diagnostics::Failure for an unknown depth, and when the conversion cannot be applied.
ImageSettings make_image_settings(const Conversion& conversion, const ImageOptions& options = {});

/// Converts the image at `input` and writes it to `output`, which may be the same file and is replaced only
/// when everything succeeded. Needs the reader server (image/reader_server.h). Throws diagnostics::Failure
/// when the input cannot be read, converted, or written in the output's format.
ImageReport convert_image(const Conversion& conversion, const std::string& input, const std::string& output,
                          const ImageOptions& options = {});

} // namespace workflow
