#include "image/color_group.h"

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
    return ColorGroup::NONE;
}

std::optional<ColorGroup> find_group(const OIIO::ImageSpec& spec, const std::string& layer) {
    ColorGroup group;
    group.layer = layer;
    for (int i = 0; i < 4; ++i)
        group.channels[i] = find_channel(spec, layer, RGBA_NAMES[i]);
    if (layer.empty() && !group.has_alpha())
        group.channels[3] = spec.alpha_channel;
    if (std::find(group.channels, group.channels + 3, ColorGroup::NONE) != group.channels + 3)
        return std::nullopt;
    return group;
}

std::optional<ColorGroup> find_first_layer(const OIIO::ImageSpec& spec) {
    for (const std::string& name : spec.channelnames) {
        const std::size_t dot = name.rfind('.');
        if (dot == std::string::npos)
            continue;
        if (auto group = find_group(spec, name.substr(0, dot)))
            return group;
    }
    return std::nullopt;
}

std::optional<ColorGroup> find_gray(const OIIO::ImageSpec& spec) {
    const int gray = find_channel(spec, "", GRAY_NAMES);
    if (gray == ColorGroup::NONE)
        return std::nullopt;
    const int alpha = find_channel(spec, "", RGBA_NAMES[3]);
    return ColorGroup{"", {gray, gray, gray, alpha}};
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

bool ColorGroup::contains(int channel) const {
    return channel != NONE && std::find(channels, channels + 4, channel) != channels + 4;
}

std::vector<ColorGroup> find_color_groups(const OIIO::ImageSpec& spec) {
    std::optional<ColorGroup> main = find_group(spec, "");
    if (!main)
        main = find_first_layer(spec);
    if (!main)
        main = find_gray(spec);
    if (!main)
        return {};

    std::vector<ColorGroup> groups = {*main};
    for (const std::string& view : get_views(spec)) {
        const std::optional<ColorGroup> group = find_group(spec, view);
        const bool is_new = group && std::none_of(groups.begin(), groups.end(), [&](const ColorGroup& known) {
                                return known.contains(group->channels[0]);
                            });
        if (is_new)
            groups.push_back(*group);
    }
    return groups;
}

} // namespace image
