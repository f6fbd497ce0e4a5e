#include "workflow/conversion.h"

#include <strings.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/color_io_manager.h"
#include "diagnostics/failure.h"
#include "workflow/correction_file.h"
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
/// Tolerance for rounding, relative to the larger of the value and 1.
constexpr float NEUTRAL_TOLERANCE = 1e-5f;

bool equals_ignoring_case(const std::string& a, const char* b) {
    return strcasecmp(a.c_str(), b) == 0;
}

std::string remove_family(const std::string& label) {
    return label.substr(label.find(ColorIOManager::FAMILY_SEPARATOR) + 1);
}

/// A converter configured by `configure`. Throws diagnostics::Failure with the module's diagnostics when
/// `configure` returns false; `what` is the beginning of the message.
template <class Configure>
std::unique_ptr<ColorIOConverter> configure_or_fail(const std::string& what, const Configure& configure) {
    auto converter = std::make_unique<ColorIOConverter>();
    ColorIODiagnostics collector;
    if (!configure(*converter))
        throw diagnostics::Failure(
            diagnostics::add_context(what, collector.take(), Code::CONVERSION_IMPOSSIBLE));
    return converter;
}

/// Configures a converter for an unpublished CDL. `configure_CDL` applies the inverse of its first CDL, then
/// its second CDL.
bool configure_local(const ColorIOManager::ColorDecisionListDef& record, bool is_undone,
                     ColorIOConverter& converter) {
    ColorIOManager::get_instance()->add_local_CDL(record);
    const CoreString nothing = ColorIO::get_default_CDL_name();
    return is_undone ? converter.configure_CDL(record.name, nothing)
                     : converter.configure_CDL(nothing, record.name);
}

void expose(float* rgba, std::size_t pixels, float gain) {
    for (std::size_t i = 0; i < pixels; ++i, rgba += 4)
        for (int channel = 0; channel < 3; ++channel)
            rgba[channel] *= gain;
}

/// Throws when the pixels stayed as they were, or may have.
void apply_stage(const Conversion::Stage& stage, float* rgba, unsigned int width, unsigned int height) {
    ColorIODiagnostics collector;
    bool is_done = false;
    try {
        is_done = stage.converter->convert_buffer(rgba, width, height, 4);
    } catch (const std::exception&) {
        // The module reported why.
    }
    if (!is_done)
        throw diagnostics::Failure(diagnostics::add_context(fmt::format("cannot convert {}", stage.title),
                                                            collector.take(), Code::CONVERSION_IMPOSSIBLE));
}

} // namespace

float get_gain(float exposure) {
    return std::exp2(exposure);
}

Conversion::Conversion(const Session& session, const ConversionRequest& request)
    : source(find_space(session, request.from, notes)) {
    std::string start = destination = destination_space = source;
    if (!request.cdl.empty() || !request.cdl_name.empty() || request.takes_exposure) {
        go_to_working_space(session);
        start = destination = destination_space = working_space;
        if (!request.cdl.empty())
            add_correction(session, request);
        if (!request.cdl_name.empty())
            add_published_cdl(request.cdl_name);
    }
    exposure_position = stages.size();
    if (!request.view.empty())
        add_view(session, start, request);
    else if (!request.to.empty())
        add_space(session, start, request.to);
}

Conversion::~Conversion() = default;
Conversion::Conversion(Conversion&&) noexcept = default;

void Conversion::add_stage(std::string title, std::unique_ptr<ColorIOConverter> converter) {
    stages.push_back({std::move(title), std::move(converter)});
}

void Conversion::go_to_working_space(const Session& session) {
    working_space = resolve_color_space(SCENE_LINEAR_ROLE, session.get_config_name()).label;
    add_conversion(session, source, working_space);
}

void Conversion::add_conversion(const Session& session, const std::string& from, const std::string& to) {
    if (remove_family(from) == remove_family(to))
        return;
    const std::string what =
        fmt::format("cannot convert from '{}' to '{}' with {}", from, to, session.get_config_name());
    add_stage(fmt::format("{} to {}", from, to), configure_or_fail(what, [&](ColorIOConverter& converter) {
                  return converter.configure(from.c_str(), to.c_str());
              }));
}

void Conversion::add_correction(const Session&, const ConversionRequest& request) {
    const Correction correction = read_valid_correction(parse_correction_source(request.cdl));
    add_unread_elements(correction, notes);
    const auto record = make_cdl_record(correction, request.undoes_cdl ? INPUT_LOCAL_CDL : OUTPUT_LOCAL_CDL);
    add_stage(fmt::format("{}{} in {}", request.undoes_cdl ? "inverse of " : "", request.cdl, working_space),
              configure_or_fail(fmt::format("cannot apply the CDL '{}'", request.cdl),
                                [&](ColorIOConverter& converter) {
                                    return configure_local(record, request.undoes_cdl, converter);
                                }));
}

void Conversion::add_published_cdl(const std::string& name) {
    const CoreString nothing = ColorIO::get_default_CDL_name();
    if (nothing == name.c_str())
        return;
    add_stage(
        fmt::format("{} in {}", name, working_space),
        configure_or_fail(fmt::format("cannot apply the CDL '{}'", name), [&](ColorIOConverter& converter) {
            return converter.configure_CDL(nothing, name.c_str());
        }));
}

void Conversion::add_view(const Session& session, const std::string& start,
                          const ConversionRequest& request) {
    const PublishedView view = find_view(session, request.display, request.view, notes);
    destination = view.label;
    destination_space = view.color_space;
    const std::string what = fmt::format("cannot convert from '{}' to the view '{}' with {}", start,
                                         view.label, session.get_config_name());
    add_stage(
        fmt::format("{} to {}", start, view.label), configure_or_fail(what, [&](ColorIOConverter& converter) {
            return converter.configure_for_display(start.c_str(), view.display.c_str(), view.view.c_str());
        }));
}

void Conversion::add_space(const Session& session, const std::string& start, const std::string& name) {
    destination = destination_space = find_space(session, name, notes);
    add_conversion(session, start, destination);
}

std::string Conversion::get_destination_tag() const {
    const std::string name = remove_family(destination_space);
    if (name.empty())
        return destination;
    const std::string scene_linear = remove_family(ColorIO::get_ROLE_SCENE_LINEAR().get_data());
    if (name == scene_linear && equals_ignoring_case(name, LINEAR_TAG))
        return LINEAR_TAG;
    return equals_ignoring_case(name, SRGB_TAG) ? SRGB_TAG : name;
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

void Conversion::apply(float* rgba, unsigned int width, unsigned int height, float exposure) const {
    if (width == 0 || height == 0)
        return;
    for (std::size_t stage = 0; stage <= stages.size(); ++stage) {
        if (stage == exposure_position && exposure != 0)
            expose(rgba, std::size_t{width} * height, get_gain(exposure));
        if (stage < stages.size())
            apply_stage(stages[stage], rgba, width, height);
    }
}

} // namespace workflow
