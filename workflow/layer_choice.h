#pragma once

#include <map>
#include <string>
#include <vector>

#include "image/color_layer.h"
#include "image/image_file.h"

namespace workflow {

/// Which layers and parts of images to convert. Names that an image lacks are errors.
struct LayerOptions {
    /// Names of layers. Empty, or "all" among them, for every layer that is color by the rule of
    /// image/image_layers.h; a name also chooses a layer whose name is one of data, or that lacks some of
    /// the colors.
    std::vector<std::string> layers;
    /// Names of parts, or their numbers from 1; empty for all.
    std::vector<std::string> parts;
    /// Names of layers or parts that are not converted.
    std::vector<std::string> skipped;
};

/// "all" of LayerOptions.
inline constexpr char ALL_LAYERS[] = "all";

/// A layer that was left as it is.
struct LeftLayer {
    std::string name;
    std::string reason; ///< "data", "skipped".
};

/// "N, P (data by name); Z (data)".
std::string describe(const std::vector<LeftLayer>& left);

/// Which layers of an image were converted, and which were left, by their names. In an image of several parts
/// the name of the part stands for its color without a layer, and before other layers: "beauty",
/// "beauty:diffuse".
struct LayerReport {
    std::vector<std::string> converted;
    std::vector<LeftLayer> left;
    /// Color spaces of the converted layers that are not in that of the image, by their names.
    std::map<std::string, std::string> other_spaces;
    bool is_part_of_input = false; ///< The input has other layers, which the output format cannot have.
};

/// "converted rgba, diffuse (from ACEScct); left N (data by name); Z, id (data)". Empty when the input has
/// only one layer, which was converted.
std::string describe(const LayerReport& report);
/// "convert rgba, diffuse (from ACEScct); leave N (data by name)", of an image that is to be converted.
std::string describe_plan(const LayerReport& report);

/// A layer to convert.
struct ChosenLayer {
    std::string name; ///< As in LayerReport.
    image::ColorLayer color;
};

/// The layers of one part.
struct PartChoice {
    std::string name; ///< For messages: "beauty", "part 2".
    std::vector<ChosenLayer> chosen;
    std::vector<LeftLayer> left;
    bool leaves_color = false; ///< Some of those left are color.

    std::vector<image::ColorLayer> get_colors() const;
};

/// Properties of a conversion that decide which layers are converted.
struct LayerConversion {
    bool mixes_channels =
        true; ///< A result depends on other channels; single channels are then not converted.
    /// Why nothing is converted, for the report: "in the data space 'Raw'"; empty to convert.
    std::string reason_to_leave;
    std::vector<std::string> part_reasons; ///< Likewise for single parts, by subimage; may be shorter.
    std::vector<bool> part_mixes;          ///< `mixes_channels` of single parts; may be shorter.
};

/// Chooses the layers of each subimage of the image at `path`, which is only for messages. Throws
/// diagnostics::Failure for an unknown name, for a named layer that cannot be converted, and when there is
/// nothing to convert without a reason to leave all.
std::vector<PartChoice> choose_layers(const std::string& path, const std::string& format,
                                      const std::vector<image::PartHeader>& headers,
                                      const LayerOptions& options, const LayerConversion& conversion);

} // namespace workflow
