#include "image/image_layers.h"

#include <algorithm>
#include <unordered_map>

#include <OpenImageIO/strutil.h>

#include "image/data_names.h"

namespace image {

namespace {

constexpr int NONE = ColorLayer::NONE;

struct ComponentNames {
    const char* letter;
    const char* word;
};
constexpr ComponentNames RGBA_NAMES[4] = {{"R", "red"}, {"G", "green"}, {"B", "blue"}, {"A", "alpha"}};
constexpr ComponentNames GRAY_NAMES = {"Y", "gray"};
/// Channels beside which Y is not gray: it is then part of a vector, or the luminance of subsampled color.
constexpr const char* NOT_BESIDE_GRAY[] = {"X", "U", "V", "W", "RY", "BY"};

/// The channels with one prefix.
struct Group {
    std::string prefix;
    std::vector<int> channels;
};

bool contains(const std::vector<int>& channels, int channel) {
    return std::find(channels.begin(), channels.end(), channel) != channels.end();
}

std::string get_prefix(const std::string& channel) {
    const std::size_t dot = channel.rfind('.');
    return dot == std::string::npos ? "" : channel.substr(0, dot);
}

std::string get_last_name(const OIIO::ImageSpec& spec, int channel) {
    const std::string name = spec.channel_name(channel);
    return name.substr(name.rfind('.') + 1); // npos + 1 is 0
}

/// The group without a prefix first.
std::vector<Group> group_channels(const OIIO::ImageSpec& spec) {
    std::vector<Group> groups = {{"", {}}};
    std::unordered_map<std::string, std::size_t> positions = {{"", 0}};
    for (int channel = 0; channel < spec.nchannels; ++channel) {
        const std::string prefix = get_prefix(spec.channel_name(channel));
        const auto [position, is_new] = positions.emplace(prefix, groups.size());
        if (is_new)
            groups.push_back({prefix, {}});
        groups[position->second].channels.push_back(channel);
    }
    return groups;
}

int find_channel(const OIIO::ImageSpec& spec, const Group& group, const ComponentNames& names) {
    for (const int channel : group.channels) {
        const std::string name = get_last_name(spec, channel);
        if (OIIO::Strutil::iequals(name, names.letter) || OIIO::Strutil::iequals(name, names.word))
            return channel;
    }
    return NONE;
}

bool has_gray(const OIIO::ImageSpec& spec, const Group& group) {
    for (const int channel : group.channels)
        for (const char* other : NOT_BESIDE_GRAY)
            if (OIIO::Strutil::iequals(get_last_name(spec, channel), other))
                return false;
    // Without a layer, Z is the depth.
    return group.prefix.empty() || find_channel(spec, group, {"Z", "Z"}) == NONE;
}

std::optional<ColorLayer> find_color(const OIIO::ImageSpec& spec, const Group& group) {
    ColorLayer color{group.prefix, {NONE, NONE, NONE, NONE}};
    for (int i = 0; i < 4; ++i)
        color.channels[i] = find_channel(spec, group, RGBA_NAMES[i]);
    if (group.prefix.empty() && !color.has_alpha() && contains(group.channels, spec.alpha_channel) &&
        !color.contains(spec.alpha_channel))
        color.channels[3] = spec.alpha_channel;
    int* const end = color.channels + 3;
    if (std::any_of(color.channels, end, [](int channel) { return channel != NONE; }))
        return color;
    const int gray = find_channel(spec, group, GRAY_NAMES);
    if (gray == NONE || gray == color.channels[3] || !has_gray(spec, group))
        return std::nullopt;
    std::fill(color.channels, end, gray);
    return color;
}

/// `is_main`: the channels have no layer.
int find_alpha_in(const OIIO::ImageSpec& spec, const std::vector<int>& channels, bool is_main) {
    for (const int channel : channels) {
        const std::string name = get_last_name(spec, channel);
        if (OIIO::Strutil::iequals(name, RGBA_NAMES[3].letter) ||
            OIIO::Strutil::iequals(name, RGBA_NAMES[3].word) || (is_main && channel == spec.alpha_channel))
            return channel;
    }
    return NONE;
}

bool is_large_integer(OIIO::TypeDesc type) {
    return type.basetype == OIIO::TypeDesc::UINT32 || type.basetype == OIIO::TypeDesc::INT32 ||
           type.basetype == OIIO::TypeDesc::UINT64 || type.basetype == OIIO::TypeDesc::INT64;
}

/// Finds out what layers of one part hold.
class LayerSearch {
public:
    LayerSearch(const OIIO::ImageSpec& spec, const PartContext& context)
        : spec(spec), context(context), part_name(get_part_name(spec)) {}

    std::vector<ImageLayer> run() {
        for (const Group& group : group_channels(spec)) {
            if (const int alpha = find_alpha_in(spec, group.channels, group.prefix.empty()); alpha != NONE)
                alphas[group.prefix] = alpha;
            add(group);
        }
        borrow_alphas();
        return std::move(layers);
    }

private:
    void add(const Group& group);
    std::string name_color(const ColorLayer& color) const;
    LayerContent classify(const ColorLayer& color) const;
    bool is_cryptomatte(const ColorLayer& color) const;
    void borrow_alphas();
    int find_alpha_for(const std::string& layer) const;
    int find_alpha_of(const std::string& layer) const {
        const auto found = alphas.find(layer);
        return found == alphas.end() ? NONE : found->second;
    }

    const OIIO::ImageSpec& spec;
    const PartContext& context;
    const std::string part_name;
    std::vector<ImageLayer> layers;
    std::unordered_map<std::string, int> alphas; ///< By prefix, also of groups without color.
};

void LayerSearch::add(const Group& group) {
    std::optional<ColorLayer> color = find_color(spec, group);
    const std::size_t position = layers.size();
    if (color)
        layers.push_back({name_color(*color), classify(*color), color});
    else if (!group.prefix.empty())
        layers.push_back({group.prefix, LayerContent::OTHER, std::nullopt});
    if (!color && !group.prefix.empty())
        return;
    for (const int channel : group.channels)
        if (!color || !color->contains(channel))
            layers.push_back({std::string(spec.channel_name(channel)), LayerContent::OTHER, std::nullopt});
    if (color && layers[position].content == LayerContent::CRYPTOMATTE)
        layers.erase(layers.begin() + static_cast<std::ptrdiff_t>(position) + 1,
                     layers.end()); // all channels of such a layer are ids and their coverage
}

std::string LayerSearch::name_color(const ColorLayer& color) const {
    if (!color.name.empty())
        return color.name;
    if (color.has_all_colors() && !color.is_gray())
        return MAIN_LAYER;
    std::string letters;
    int only = NONE;
    for (int i = 0; i < (color.is_gray() ? 1 : 3); ++i)
        if (color.channels[i] != NONE) {
            letters += RGBA_NAMES[i].letter;
            only = color.channels[i];
        }
    return letters.size() == 1 ? std::string(spec.channel_name(only)) : letters;
}

LayerContent LayerSearch::classify(const ColorLayer& color) const {
    for (int i = 0; i < 3; ++i)
        if (context.format == "openexr" && color.channels[i] != NONE &&
            is_large_integer(spec.channelformat(color.channels[i])))
            return LayerContent::INTEGERS;
    if (is_cryptomatte(color))
        return LayerContent::CRYPTOMATTE;
    if (is_data_name(color.name) || is_data_name(part_name))
        return LayerContent::NAMED_DATA;
    const auto count =
        std::count_if(color.channels, color.channels + 3, [](int channel) { return channel != NONE; });
    const bool is_enough = count == 3 || (count == 1 && color.name.empty());
    return is_enough ? LayerContent::COLOR : LayerContent::SOME_COLOR;
}

bool LayerSearch::is_cryptomatte(const ColorLayer& color) const {
    return std::any_of(context.cryptomattes.begin(), context.cryptomattes.end(),
                       [&](const std::string& cryptomatte) {
                           return belongs_to_cryptomatte(color.name, cryptomatte) ||
                                  belongs_to_cryptomatte(part_name, cryptomatte);
                       });
}

void LayerSearch::borrow_alphas() {
    std::vector<std::pair<ColorLayer*, int>> borrowed;
    for (ImageLayer& layer : layers)
        if (layer.color && !layer.color->has_alpha())
            borrowed.emplace_back(&*layer.color, find_alpha_for(layer.color->name));
    for (const auto& [color, alpha] : borrowed) {
        color->channels[3] = alpha;
        color->owns_alpha = false;
    }
}

/// The alpha of "a.b", of "a", or that without a layer, for the layer "a.b.c".
int LayerSearch::find_alpha_for(const std::string& layer) const {
    for (std::string around = get_prefix(layer); !around.empty(); around = get_prefix(around))
        if (const int alpha = find_alpha_of(around); alpha != NONE)
            return alpha;
    return find_alpha_of(find_view(spec, layer));
}

} // namespace

std::vector<ImageLayer> find_layers(const OIIO::ImageSpec& spec, const PartContext& context) {
    return LayerSearch(spec, context).run();
}

std::vector<ColorLayer> find_color_layers(const OIIO::ImageSpec& spec, const PartContext& context) {
    std::vector<ColorLayer> colors;
    for (const ImageLayer& layer : find_layers(spec, context))
        if (layer.is_color())
            colors.push_back(*layer.color);
    return colors;
}

int find_main_alpha(const OIIO::ImageSpec& spec) {
    return find_alpha_in(spec, group_channels(spec).front().channels, true);
}

std::string find_view(const OIIO::ImageSpec& spec, const std::string& layer) {
    const OIIO::ParamValue* views = spec.find_attribute("multiView");
    if (views == nullptr || views->type().elementtype() != OIIO::TypeDesc::STRING)
        return "";
    const std::vector<std::string> parts = OIIO::Strutil::splits(layer, ".");
    const int count = views->nvalues() * static_cast<int>(views->type().numelements());
    for (int i = 1; i < count; ++i)
        if (const std::string view = views->get_string_indexed(i);
            std::find(parts.begin(), parts.end(), view) != parts.end())
            return view;
    return "";
}

std::string get_part_name(const OIIO::ImageSpec& spec) {
    return spec.get_string_attribute("oiio:subimagename");
}

} // namespace image
