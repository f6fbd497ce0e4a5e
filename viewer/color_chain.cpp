#include "viewer/color_chain.h"

#include <cmath>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "tool/exit_code.h"
#include "viewer/color_host.h"

namespace tool {

namespace {

void expose(float* rgba, std::size_t pixels, float gain) {
    for (std::size_t i = 0; i < pixels; ++i, rgba += 4)
        for (int channel = 0; channel < 3; ++channel)
            rgba[channel] *= gain;
}

} // namespace

float get_gain(float exposure) {
    return std::exp2(exposure);
}

bool ColorChain::Key::operator==(const Key& other) const {
    return revision == other.revision && input_space == other.input_space && cdl == other.cdl &&
           view == other.view && exposes == other.exposes;
}

ColorChain::Key ColorChain::make_key(const ColorHost& host, const ColorSettings& settings) {
    return {host.get_revision(), settings.input_space, settings.cdl, settings.view, settings.exposure != 0};
}

ColorChain::ColorChain(ColorHost& host, const ColorSettings& settings) {
    const bool has_cdl = settings.cdl != host.get_default_cdl();
    std::string from = settings.input_space;
    if (has_cdl || settings.exposure != 0) {
        const std::string scene_linear(ColorIO::get_ROLE_SCENE_LINEAR().view());
        add_conversion(host, from, scene_linear);
        if (has_cdl)
            add_cdl(host, settings.cdl);
        gain_position = stages.size();
        from = scene_linear;
    }
    if (!settings.view.empty())
        add_view(host, from, settings.view);
}

ColorChain::~ColorChain() = default;

void ColorChain::add_conversion(ColorHost& host, const std::string& from, const std::string& to) {
    const auto bare = [](const std::string& label) {
        return label.substr(label.find(ColorIOManager::FAMILY_SEPARATOR) + 1);
    };
    if (bare(from) == bare(to))
        return;
    auto converter = std::make_unique<ColorIOConverter>();
    host.take_failure();
    if (!converter->configure(from.c_str(), to.c_str()))
        throw CommandError(
            fmt::format("cannot convert from '{}' to '{}': {}", from, to, host.take_failure()));
    stages.push_back(std::move(converter));
}

void ColorChain::add_cdl(ColorHost& host, const std::string& cdl) {
    auto converter = std::make_unique<ColorIOConverter>();
    host.take_failure();
    if (converter->configure_CDL(ColorIO::get_default_CDL_name(), cdl.c_str()))
        stages.push_back(std::move(converter));
    else if (const std::string reason = host.take_failure(); !reason.empty())
        throw CommandError(fmt::format("cannot apply the CDL '{}': {}", cdl, reason));
}

void ColorChain::add_view(ColorHost& host, const std::string& from, const std::string& view) {
    CoreString display, view_of_display;
    if (!ColorIO::get_display_view(view.c_str(), display, view_of_display))
        throw CommandError(fmt::format("{} has no view '{}'", host.get_config_name(), view));
    auto converter = std::make_unique<ColorIOConverter>();
    host.take_failure();
    if (!converter->configure_for_display(from.c_str(), display, view_of_display))
        throw CommandError(
            fmt::format("cannot show '{}' through the view '{}': {}", from, view, host.take_failure()));
    stages.push_back(std::move(converter));
}

void ColorChain::convert(float* rgba, unsigned int width, unsigned int height, float exposure) const {
    for (std::size_t stage = 0; stage <= stages.size(); ++stage) {
        if (stage == gain_position && exposure != 0)
            expose(rgba, std::size_t{width} * height, get_gain(exposure));
        if (stage < stages.size())
            stages[stage]->convert_buffer(rgba, width, height, 4);
    }
}

} // namespace tool
