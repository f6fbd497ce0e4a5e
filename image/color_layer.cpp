#include "image/color_layer.h"

#include <algorithm>
#include <optional>

#include <OpenImageIO/strutil.h>

namespace image {

namespace {

struct ComponentNames {
    const char* letter;
    const char* word;
};
constexpr ComponentNames RGBA_NAMES[4] = {{"R", "red"}, {"G", "green"}, {"B", "blue"}, {"A", "alpha"}};
constexpr ComponentNames GRAY_NAMES = {"Y", "gray"};

bool is_named(const std::string& channel, const std::string& layer, const ComponentNames& names) {
    const std::string prefix = layer.empty() ? "" : layer + ".";
    return OIIO::Strutil::iequals(channel, prefix + names.letter) ||
           OIIO::Strutil::iequals(channel, prefix + names.word);
}

int find_channel(const OIIO::ImageSpec& spec, const std::string& layer, const ComponentNames& names) {
    for (int channel = 0; channel < spec.nchannels; ++channel)
        if (is_named(spec.channel_name(channel), layer, names))
            return channel;
    return ColorLayer::NONE;
}

std::optional<ColorLayer> find_layer(const OIIO::ImageSpec& spec, const std::string& name) {
    ColorLayer layer;
    layer.name = name;
    for (int i = 0; i < 4; ++i)
        layer.channels[i] = find_channel(spec, name, RGBA_NAMES[i]);
    if (name.empty() && !layer.has_alpha())
        layer.channels[3] = spec.alpha_channel;
    if (std::find(layer.channels, layer.channels + 3, ColorLayer::NONE) != layer.channels + 3)
        return std::nullopt;
    return layer;
}

std::optional<ColorLayer> find_first_layer(const OIIO::ImageSpec& spec) {
    for (const std::string& name : spec.channelnames) {
        const std::size_t dot = name.rfind('.');
        if (dot == std::string::npos)
            continue;
        if (auto layer = find_layer(spec, name.substr(0, dot)))
            return layer;
    }
    return std::nullopt;
}

std::optional<ColorLayer> find_gray(const OIIO::ImageSpec& spec) {
    const int gray = find_channel(spec, "", GRAY_NAMES);
    if (gray == ColorLayer::NONE)
        return std::nullopt;
    const int alpha = find_channel(spec, "", RGBA_NAMES[3]);
    return ColorLayer{"", {gray, gray, gray, alpha}};
}

std::vector<std::string> get_views(const OIIO::ImageSpec& spec) {
    std::vector<std::string> views;
    const OIIO::ParamValue* attribute = spec.find_attribute("multiView");
    if (attribute != nullptr && attribute->type().elementtype() == OIIO::TypeDesc::STRING)
        for (int i = 0; i < attribute->nvalues() * static_cast<int>(attribute->type().numelements()); ++i)
            views.push_back(attribute->get_string_indexed(i));
    return views;
}

} // namespace

bool ColorLayer::contains(int channel) const {
    return channel != NONE && std::find(channels, channels + 4, channel) != channels + 4;
}

std::vector<ColorLayer> find_color_layers(const OIIO::ImageSpec& spec) {
    std::optional<ColorLayer> main = find_layer(spec, "");
    if (!main)
        main = find_first_layer(spec);
    if (!main)
        main = find_gray(spec);
    if (!main)
        return {};

    std::vector<ColorLayer> layers = {*main};
    for (const std::string& view : get_views(spec)) {
        const std::optional<ColorLayer> layer = find_layer(spec, view);
        const bool is_new = layer && std::none_of(layers.begin(), layers.end(), [&](const ColorLayer& known) {
                                return known.contains(layer->channels[0]);
                            });
        if (is_new)
            layers.push_back(*layer);
    }
    return layers;
}

} // namespace image
