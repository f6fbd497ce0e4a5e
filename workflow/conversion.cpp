#include "workflow/conversion.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_inspection.h"
#include "diagnostics/failure.h"
#include "image/color_tags.h"
#include "workflow/ignoring_case.h"
#include "workflow/module_call.h"
#include "workflow/name_resolution.h"
#include "workflow/session.h"

namespace workflow {

namespace {

using diagnostics::Code;

constexpr char SCENE_LINEAR_ROLE[] = "scene_linear";

// OpenImageIO's names of the two color spaces that file formats have tags for.
constexpr char LINEAR_TAG[] = "Linear";
constexpr char SRGB_TAG[] = "sRGB";

/// Grays to check for a tint: black, shadows, middle gray, white, a highlight.
constexpr float PROBED_GRAYS[] = {0.0f, 0.01f, 0.18f, 0.5f, 1.0f, 4.0f};
/// The two other channels of a color with one of those values, to check whether channels are mixed.
constexpr std::pair<float, float> PROBED_COMPANIONS[] = {
    {0.0f, 0.0f}, {1.0f, 0.18f}, {0.01f, 0.5f}, {0.5f, 4.0f}};
/// Tolerance for rounding, relative to the larger of the value and 1.
constexpr float NEUTRAL_TOLERANCE = 1e-5f;

void expose(float* pixel, std::size_t pixels, unsigned int channels, float gain) {
    for (std::size_t i = 0; i < pixels; ++i, pixel += channels)
        for (int channel = 0; channel < 3; ++channel)
            pixel[channel] *= gain;
}

/// Throws when the pixels stayed as they were, or may have.
void apply_stage(const Conversion::Stage& stage, float* pixels, unsigned int width, unsigned int height,
                 unsigned int channels) {
    require_success([&] { return fmt::format("cannot convert {}", stage.title); },
                    Code::CONVERSION_IMPOSSIBLE,
                    [&] { return stage.converter->convert_buffer(pixels, width, height, channels); });
}

/// Checked with one color.
bool leaves_colors(const Conversion::Stage& stage) {
    constexpr float COLOR[] = {0.18f, 0.5f, 0.9f, 1.0f};
    float rgba[std::size(COLOR)];
    std::copy(std::begin(COLOR), std::end(COLOR), rgba);
    apply_stage(stage, rgba, 1, 1, 4);
    return std::equal(std::begin(COLOR), std::end(COLOR), rgba);
}

/// Whether the config says that the color space holds data.
bool holds_data(const std::string& label) {
    const CoreVector<ColorIOInspection::ColorSpace> spaces = ColorIOInspection::get_color_spaces();
    return std::any_of(spaces.begin(), spaces.end(), [&](const ColorIOInspection::ColorSpace& known) {
        return known.is_data && known.name == remove_family(label).c_str();
    });
}

} // namespace

float get_gain(float exposure) {
    return std::exp2(exposure);
}

Conversion::Conversion(const Session& session, const ConversionRequest& request)
    : is_exposable(request.takes_exposure) {
    if (request.inverse_view.empty())
        start_in_space(session, request.from);
    else
        start_in_view(session, request.inverse_view);
    if (has_scene_linear_step(request.steps) || request.takes_exposure)
        go_to_working_space(session);
    add_steps(session, request.steps, true);
    exposure_position = stages.size();
    destination = destination_space = space;
    const std::string former = space;
    go_to_destination(session, request);
    if (!stays_for_data(former))
        note_references();
    if (!request.from.empty() && request.steps.empty() && !request.takes_exposure)
        note_data();
    add_steps(session, request.steps, false);
}

Conversion::~Conversion() = default;
Conversion::Conversion(Conversion&&) noexcept = default;

void Conversion::start_in_space(const Session& session, const std::string& name) {
    source = space = find_space(session, name, notes);
}

void Conversion::start_in_view(const Session& session, const std::string& label) {
    const PublishedView view = find_view(session, "", label, notes);
    source = view.label;
    working_space = space = resolve_color_space(SCENE_LINEAR_ROLE, session.get_config_name()).label;
    stages.push_back(make_inverse_view_stage(session, view, working_space));
}

void Conversion::go_to_working_space(const Session& session) {
    working_space = resolve_color_space(SCENE_LINEAR_ROLE, session.get_config_name()).label;
    go_to_space(session, working_space);
}

void Conversion::go_to_space(const Session& session, const std::string& label) {
    if (remove_family(space) != remove_family(label))
        stages.push_back(make_space_stage(session, space, label));
    space = label;
}

void Conversion::go_to_destination(const Session& session, const ConversionRequest& request) {
    if (!request.view.empty()) {
        const PublishedView view = find_view(session, request.display, request.view, notes);
        stages.push_back(make_view_stage(session, space, view));
        destination = view.label;
        destination_space = view.color_space;
    } else if (!request.to.empty()) {
        destination = destination_space = find_space(session, request.to, notes);
        go_to_space(session, destination);
    }
}

void Conversion::add_steps(const Session& session, const std::vector<ColorStep>& steps,
                           bool are_scene_linear) {
    for (const ColorStep& step : steps) {
        if (step.is_scene_linear() != are_scene_linear)
            continue;
        ConversionStage stage = make_step_stage(session, step, space, notes);
        if (stage.converter)
            stages.push_back(std::move(stage));
        if (are_scene_linear)
            continue;
        destination = step.name;
        destination_space.clear();
        is_transformed = true;
    }
}

/// OpenColorIO takes the config's default view transform between the two references.
void Conversion::note_references() {
    bool is_display[] = {false, false};
    const std::string ends[] = {remove_family(source), remove_family(destination)};
    for (const ColorIOInspection::ColorSpace& known : ColorIOInspection::get_color_spaces())
        for (int end = 0; end < 2; ++end)
            is_display[end] =
                is_display[end] || (known.is_display_referred && known.name == ends[end].c_str());
    if (is_display[0] == is_display[1])
        return;
    const std::string& label = is_display[0] ? source : destination;
    notes.push_back(
        with_hint(diagnostics::make_note(
                      Code::REFERENCE_CHANGED,
                      fmt::format("'{}' is display-referred: the default view transform of the config is {}",
                                  label, is_display[0] ? "inverted" : "applied"),
                      label),
                  is_display[0] ? "to invert a view instead, give the view as the source"
                                : "to convert for a view, give the view as the destination"));
}

/// OpenColorIO converts nothing from a color space of data.
void Conversion::note_data() {
    is_data_left = holds_data(source) && !stages.empty();
    if (is_data_left)
        notes.push_back(diagnostics::make_note(
            Code::COLORS_UNCHANGED, fmt::format("'{}' holds data, which is not converted", source), source));
}

/// Nor does it convert to such a one, or to a view of it: colors stay in the color space `former`, and are
/// colors as before.
bool Conversion::stays_for_data(const std::string& former) {
    if (remove_family(destination_space) == remove_family(former) || !holds_data(destination_space) ||
        holds_data(former) || !leaves_colors(stages.back()))
        return false;
    notes.push_back(diagnostics::make_note(
        Code::COLORS_UNCHANGED,
        fmt::format("'{}' holds data, to which colors are not converted: they stay in '{}'", destination,
                    former),
        destination));
    destination_space = former;
    return true;
}

std::string Conversion::get_destination_tag() const {
    if (is_transformed)
        return image::UNKNOWN_COLOR_SPACE;
    const std::string name = remove_family(destination_space);
    if (name.empty())
        return destination;
    const std::string scene_linear = remove_family(ColorIO::get_ROLE_SCENE_LINEAR().get_data());
    if (name == scene_linear && equal_ignoring_case(name, LINEAR_TAG))
        return LINEAR_TAG;
    return equal_ignoring_case(name, SRGB_TAG) ? SRGB_TAG : name;
}

bool Conversion::keeps_neutrals() const {
    std::vector<float> pixels;
    for (const float gray : PROBED_GRAYS)
        pixels.insert(pixels.end(), {gray, gray, gray, 1.0f});
    apply(pixels.data(), static_cast<unsigned int>(std::size(PROBED_GRAYS)), 1);
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        const auto [least, most] = std::minmax({pixels[i], pixels[i + 1], pixels[i + 2]});
        if (!(most - least <= NEUTRAL_TOLERANCE * std::max(1.0f, std::fabs(most))))
            return false;
    }
    return true;
}

bool Conversion::mixes_channels() const {
    std::vector<float> pixels;
    for (int channel = 0; channel < 3; ++channel)
        for (const float value : PROBED_GRAYS)
            for (const auto& [next, last] : PROBED_COMPANIONS) {
                float pixel[] = {0, 0, 0, 1};
                pixel[channel] = value;
                pixel[(channel + 1) % 3] = next;
                pixel[(channel + 2) % 3] = last;
                pixels.insert(pixels.end(), std::begin(pixel), std::end(pixel));
            }
    apply(pixels.data(), static_cast<unsigned int>(pixels.size() / 4), 1);
    for (std::size_t i = 0; i < pixels.size() / 4; ++i) {
        const std::size_t channel = i / (std::size(PROBED_GRAYS) * std::size(PROBED_COMPANIONS));
        const std::size_t first = i - i % std::size(PROBED_COMPANIONS);
        const float expected = pixels[first * 4 + channel];
        if (!(std::fabs(pixels[i * 4 + channel] - expected) <=
              NEUTRAL_TOLERANCE * std::max(1.0f, std::fabs(expected))))
            return true;
    }
    return false;
}

void Conversion::apply(float* pixels, unsigned int width, unsigned int height, float exposure,
                       unsigned int channels) const {
    if (width == 0 || height == 0)
        return;
    for (std::size_t stage = 0; stage <= stages.size(); ++stage) {
        if (stage == exposure_position && exposure != 0)
            expose(pixels, std::size_t{width} * height, channels, get_gain(exposure));
        if (stage < stages.size())
            apply_stage(stages[stage], pixels, width, height, channels);
    }
}

} // namespace workflow
