#pragma once

#include <optional>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/color_layer.h"

namespace image {

/// What the channels of a layer hold.
enum class LayerContent {
    COLOR,       ///< Red, green and blue, or gray; without a layer also one of them.
    SOME_COLOR,  ///< Not all of red, green and blue.
    NAMED_DATA,  ///< Color channels, but the name of the layer or of its part is one of data.
    CRYPTOMATTE, ///< Ids, by the metadata of the file.
    INTEGERS,    ///< Color channels of 32-bit integers in OpenEXR, which has them for ids.
    OTHER        ///< No color channels.
};

/// Channels of a part with a common prefix, or those without one.
struct ImageLayer {
    /// "diffuse" for "diffuse.R"; "rgba" for red, green and blue without a layer, "RG" or the
    /// name of the channel for some of them. Other channels that are
    /// beside color are layers with the whole name of the channel: "Z", "left.Z".
    std::string name;
    LayerContent content;
    std::optional<ColorLayer> color; ///< Nothing for OTHER.

    /// Converted unless the user chooses otherwise.
    bool is_color() const { return content == LayerContent::COLOR; }
    /// Converted if the user names it.
    bool is_convertible() const {
        return content == LayerContent::COLOR || content == LayerContent::SOME_COLOR ||
               content == LayerContent::NAMED_DATA;
    }
};

/// Name of red, green and blue without a layer.
inline constexpr char MAIN_LAYER[] = "rgba";

/// Facts about a part and its file beyond its channels.
struct PartContext {
    std::string format;                    ///< OpenImageIO's name of the format: "openexr".
    std::vector<std::string> cryptomattes; ///< Names of those that the file declares in any part.
};

/// The layers of a part, in the order of their first channels; that without a prefix first. Color is found by
/// the names of channels, in any order: R, G, B and A, their words ("red"), or Y ("gray") alone. A layer
/// without alpha takes that of the layer around it or, in the same view (attribute "multiView"), that without
/// a layer.
std::vector<ImageLayer> find_layers(const OIIO::ImageSpec& spec, const PartContext& context = {});

/// The color of those that are color.
std::vector<ColorLayer> find_color_layers(const OIIO::ImageSpec& spec, const PartContext& context = {});

/// The alpha without a layer, which may be there without color; NONE if it is not.
int find_main_alpha(const OIIO::ImageSpec& spec);

/// The view of the attribute "multiView" whose name is part of that of the layer; empty for the first view,
/// whose color has no layer, and for images without views.
std::string find_view(const OIIO::ImageSpec& spec, const std::string& layer);

/// The name of a part: "oiio:subimagename"; may be empty.
std::string get_part_name(const OIIO::ImageSpec& spec);

} // namespace image
