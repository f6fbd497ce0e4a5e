#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "image/part_conversion.h"
#include "image/part_plan.h"
#include "workflow/layer_choice.h"
#include "workflow/part_tags.h"

namespace workflow {

/// Paths of an image to read and of one to write; they may be the same file.
struct ImageJob {
    std::string input;
    std::string output;
    std::optional<int> frame = std::nullopt; ///< Its number in a sequence.
};

class Conversion;

/// How to convert parts that are in another color space than the image by their tags.
struct PartSettings {
    TaggedSpace space;
    std::shared_ptr<const Conversion> conversion; ///< From that color space; null for data, which is left.
    image::ConvertRows convert;                   ///< Empty to leave colors unchanged.
    bool mixes_channels = true;                   ///< Of `convert`.
    diagnostics::Diagnostics failure;             ///< Why it cannot be converted; thrown where it is chosen.
    // As in OutputOptions.
    image::ColorDescription colors;
    bool keeps_space = false;
    bool neutrals_stay_neutral = true;
};

/// How to convert images; the same for all images of a sequence.
struct ImageSettings {
    image::ConvertRows convert; ///< Empty to leave colors unchanged.
    image::OutputOptions output_options;
    LayerOptions layers;
    bool mixes_channels = true; ///< Of `convert`: single channels of color are then not converted.
    /// The color space that the images are found to be in, if it is one of data: nothing is converted then.
    std::string data_space;
    int threads = 0; ///< Worker threads for one image; 0 for all cores.
    /// The color tags of the image that the conversion was chosen for; none where the user chose it. An image
    /// with other tags gets a warning, or is not converted if `is_strict`.
    std::optional<std::vector<std::string>> source_tags;
    /// The same for the tags of the parts. Other tags of a part are not looked up.
    std::vector<std::vector<std::string>> part_tags;
    bool is_strict = false;
    std::vector<PartSettings> parts; ///< Of those that are not in the color space of the image.
    /// Of the conversion (workflow/fingerprint.h), to be recorded in the output; empty for none.
    std::string fingerprint;
};

} // namespace workflow
