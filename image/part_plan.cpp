#include "image/part_plan.h"

#include <algorithm>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "image/image_layers.h"
#include "image/stale_metadata.h"

namespace image {

namespace {

using diagnostics::Code;

constexpr char STRAIGHT_ALPHA[] = "oiio:UnassociatedAlpha";

/// The layer and component of each channel of the input. A channel of several layers belongs to the first
/// one.
std::vector<PlannedChannel> find_places(const OIIO::ImageSpec& input, const std::vector<ColorLayer>& layers) {
    std::vector<PlannedChannel> places;
    for (int channel = 0; channel < input.nchannels; ++channel)
        places.push_back({channel, ColorLayer::NONE, 0});
    for (std::size_t layer = layers.size(); layer-- > 0;)
        for (int component = layers[layer].owns_alpha ? 3 : 2; component >= 0; --component)
            if (const int channel = layers[layer].channels[component]; channel != ColorLayer::NONE)
                places[static_cast<std::size_t>(channel)] = {channel, static_cast<int>(layer), component};
    return places;
}

bool is_color(const PlannedChannel& channel) {
    return channel.layer != ColorLayer::NONE;
}

bool is_gray(const PartPlan& plan, const PlannedChannel& channel) {
    return is_color(channel) && channel.component < 3 &&
           plan.layers[static_cast<std::size_t>(channel.layer)].is_gray();
}

/// With `widen_gray` a gray channel is replaced by three channels.
std::vector<PlannedChannel> plan_all_channels(const OIIO::ImageSpec& input, const PartPlan& plan,
                                              bool widen_gray) {
    std::vector<PlannedChannel> channels;
    for (const PlannedChannel& planned : find_places(input, plan.layers)) {
        channels.push_back(planned);
        if (widen_gray && is_gray(plan, planned))
            for (int component : {1, 2})
                channels.push_back({planned.source, planned.layer, component});
    }
    return channels;
}

/// Places in the layer that a format with a single layer gets: the first converted layer, otherwise the first
/// layer of the input with red, green and blue. Empty when the input has neither.
std::vector<PlannedChannel> find_single_layer(const OIIO::ImageSpec& input, const PartPlan& plan) {
    if (!plan.layers.empty())
        return find_places(input, {plan.layers.front()});
    for (const ImageLayer& layer : find_layers(input))
        if (layer.color && layer.color->has_all_colors())
            return find_places(input, {*layer.color});
    return {};
}

/// Sorts the channels as red, green, blue, alpha, and removes those that the format does not support. Returns
/// the names of these.
std::string keep_single_layer(const OIIO::ImageSpec& input, const FormatAbilities& abilities,
                              PartPlan& plan) {
    const std::vector<PlannedChannel> places = find_single_layer(input, plan);
    if (places.empty())
        return "";
    const auto get_place = [&](const PlannedChannel& channel) {
        return places[static_cast<std::size_t>(channel.source)];
    };
    const auto get_component = [&](const PlannedChannel& channel) {
        return is_color(channel) ? channel.component : get_place(channel).component;
    };
    const auto is_kept_color = [&](const PlannedChannel& channel) {
        return is_color(get_place(channel)) && get_component(channel) < 3;
    };
    const bool has_alpha =
        abilities.has_alpha && (abilities.has_gray_alpha ||
                                std::count_if(plan.channels.begin(), plan.channels.end(), is_kept_color) > 1);
    std::vector<PlannedChannel> kept;
    std::string lost;
    for (const PlannedChannel& channel : plan.channels)
        if (is_kept_color(channel) || (is_color(get_place(channel)) && has_alpha))
            kept.push_back(channel);
        else
            lost += (lost.empty() ? "" : ", ") + std::string(input.channel_name(channel.source));
    std::stable_sort(kept.begin(), kept.end(), [&](const PlannedChannel& a, const PlannedChannel& b) {
        return get_component(a) < get_component(b);
    });
    plan.channels = std::move(kept);
    return lost;
}

/// Removes the channels that the format does not support, and notes their names.
void keep_what_fits(const OIIO::ImageSpec& input, const FormatAbilities& abilities, PartPlan& plan) {
    if (abilities.has_any_channels)
        return;
    const std::string lost = keep_single_layer(input, abilities, plan);
    if (!lost.empty())
        plan.notes.push_back(diagnostics::make_note(
            Code::CHANNELS_DROPPED,
            fmt::format("{} does not support the channels {}: they are not written", abilities.name, lost),
            lost));
}

/// `plain`: the format has no layers.
std::string get_output_name(const OIIO::ImageSpec& input, const PartPlan& plan, const PlannedChannel& channel,
                            bool widen_gray, bool plain) {
    static constexpr const char* PLAIN_NAMES[] = {"R", "G", "B", "A"};
    const bool is_widened = widen_gray && is_gray(plan, channel);
    if (!is_widened && !(plain && channel.layer == 0))
        return input.channel_name(channel.source);
    const std::string& layer = plan.layers[static_cast<std::size_t>(channel.layer)].name;
    return (plain || layer.empty() ? "" : layer + ".") + PLAIN_NAMES[channel.component];
}

/// The alpha of the main color, whether it is converted or not; in a format without layers that of the color
/// that is written.
bool is_alpha(const OIIO::ImageSpec& input, const FormatAbilities& abilities, const PlannedChannel& channel) {
    if (abilities.has_any_channels && input.alpha_channel >= 0)
        return channel.source == input.alpha_channel;
    return channel.layer == 0 && channel.component == 3;
}

/// Notes data whose type changes, because the format has one type for all channels.
void note_types(const OIIO::ImageSpec& input, const FormatAbilities& abilities, PartPlan& plan) {
    std::string changed;
    for (const PlannedChannel& channel : plan.channels)
        if (!is_color(channel) && input.channelformat(channel.source) != plan.spec.format)
            changed += (changed.empty() ? "" : ", ") + std::string(input.channel_name(channel.source));
    if (!changed.empty())
        plan.notes.push_back(diagnostics::make_note(
            Code::IMAGE_ADAPTED,
            fmt::format("{} has one pixel type for all channels: the type of {} changes", abilities.name,
                        changed),
            changed));
}

void settle_channels(const OIIO::ImageSpec& input, const FormatAbilities& abilities, bool widen_gray,
                     OIIO::TypeDesc depth, PartPlan& plan) {
    OIIO::ImageSpec& spec = plan.spec;
    const bool stays_gray = !plan.layers.empty() && plan.layers.front().is_gray() && !widen_gray;
    const bool plain = !abilities.has_any_channels && !stays_gray;
    spec.nchannels = static_cast<int>(plan.channels.size());
    spec.channelnames.clear();
    spec.channelformats.clear();
    spec.alpha_channel = spec.z_channel = -1;
    for (int i = 0; i < spec.nchannels; ++i) {
        const PlannedChannel& channel = plan.channels[static_cast<std::size_t>(i)];
        spec.channelnames.push_back(get_output_name(input, plan, channel, widen_gray, plain));
        const bool wanted = depth != OIIO::TypeUnknown && is_color(channel);
        spec.channelformats.push_back(
            get_storable_type(wanted ? depth : input.channelformat(channel.source), abilities.name));
        if (is_alpha(input, abilities, channel))
            spec.alpha_channel = i;
        if (channel.source == input.z_channel && !is_color(channel))
            spec.z_channel = i;
    }

    const auto color = std::find_if(plan.channels.begin(), plan.channels.end(), is_color);
    spec.format = color == plan.channels.end()
                      ? spec.channelformats.front()
                      : spec.channelformats[static_cast<std::size_t>(color - plan.channels.begin())];
    const bool uniform = std::all_of(spec.channelformats.begin(), spec.channelformats.end(),
                                     [&](OIIO::TypeDesc type) { return type == spec.format; });
    if (!uniform && !abilities.has_channel_formats)
        note_types(input, abilities, plan);
    if (uniform || !abilities.has_channel_formats)
        spec.channelformats.clear();
}

void settle_windows(const OIIO::ImageSpec& input, const std::string& input_format,
                    const FormatAbilities& abilities, PartPlan& plan) {
    OIIO::ImageSpec& spec = plan.spec;
    const bool starts_in_range =
        abilities.has_negative_origin || std::min({spec.x, spec.y, spec.full_x, spec.full_y}) >= 0;
    if ((abilities.has_windows && starts_in_range) || input_format == abilities.name || spec.depth > 1)
        return;
    const OIIO::ROI data = input.roi();
    const OIIO::ROI display = input.roi_full();
    if (display.width() < 1 || display.height() < 1)
        return;
    if (data.xbegin != display.xbegin || data.ybegin != display.ybegin || data.width() != display.width() ||
        data.height() != display.height())
        plan.notes.push_back(diagnostics::make_note(
            Code::IMAGE_ADAPTED,
            fmt::format("{} does not support data windows: the display window of {} x {} is written",
                        abilities.name, display.width(), display.height())));
    spec.x = spec.full_x = input.full_x;
    spec.y = spec.full_y = input.full_y;
    spec.width = spec.full_width = input.full_width;
    spec.height = spec.full_height = input.full_height;
}

void settle_alpha(const OIIO::ImageSpec& input, const FormatAbilities& abilities, AlphaRule rule,
                  PartPlan& plan) {
    const bool has_alpha = std::any_of(plan.layers.begin(), plan.layers.end(),
                                       [](const ColorLayer& layer) { return layer.has_alpha(); });
    if (!has_alpha) {
        if (input.alpha_channel < 0)
            plan.spec.erase_attribute(STRAIGHT_ALPHA);
        return;
    }
    const bool was_straight = input.get_int_attribute(STRAIGHT_ALPHA) != 0;
    plan.divides_by_alpha =
        rule == AlphaRule::DIVIDE || (rule == AlphaRule::AS_THE_FILE_SAYS && !was_straight);

    bool stays_straight = was_straight;
    if (plan.spec.alpha_channel >= 0 && abilities.alpha_convention != AlphaConvention::EITHER)
        stays_straight = abilities.alpha_convention == AlphaConvention::STRAIGHT;
    plan.multiplies_by_alpha = plan.divides_by_alpha && (was_straight || !stays_straight);
    plan.associates_alpha = was_straight && !stays_straight && !plan.divides_by_alpha;
    plan.straightens_alpha = !was_straight && stays_straight && !plan.divides_by_alpha;
    plan.spec.erase_attribute(STRAIGHT_ALPHA);
    if (stays_straight && plan.spec.alpha_channel >= 0)
        plan.spec.attribute(STRAIGHT_ALPHA, 1);
}

} // namespace

int PartPlan::find_alpha_part() const {
    const auto found = std::find_if(layers.begin(), layers.end(), [](const ColorLayer& layer) {
        return layer.alpha_part != ColorLayer::NONE;
    });
    return found == layers.end() ? ColorLayer::NONE : found->alpha_part;
}

PartPlan plan_part(const OIIO::ImageSpec& input, std::vector<ColorLayer> layers,
                   const std::string& input_format, const FormatAbilities& abilities,
                   const OutputOptions& options) {
    PartPlan plan;
    plan.spec = input;
    plan.layers = std::move(layers);
    const bool widen_gray = !options.neutrals_stay_neutral || !abilities.has_gray;
    const PixelDepth depth =
        options.depth.is_known() ? options.depth : get_usual_depth(input.format, abilities.name);
    plan.channels = plan_all_channels(input, plan, widen_gray);
    keep_what_fits(input, abilities, plan);
    settle_channels(input, abilities, widen_gray, depth.type, plan);
    settle_windows(input, input_format, abilities, plan);
    settle_alpha(input, abilities, options.alpha_rule, plan);
    if (!abilities.has_tiles)
        plan.spec.tile_width = plan.spec.tile_height = plan.spec.tile_depth = 0;
    if (!plan.layers.empty())
        remove_stale_color_metadata(plan.spec, options.colors.name, options.keeps_space, plan.notes);
    const bool same_depth = plan.spec.format == input.format &&
                            plan.spec.channelformats == input.channelformats &&
                            (!depth.is_known() || depth == get_depth(input, input_format));
    remove_foreign_metadata(plan.spec, abilities.name, input_format == abilities.name, same_depth);
    set_bits(depth, plan.spec);
    if (!plan.layers.empty() && !options.colors.name.empty())
        describe_colors(options.colors, abilities.name, plan.spec);
    return plan;
}

} // namespace image
