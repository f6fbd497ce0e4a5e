#include "workflow/conversion.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include <OpenImageIO/strutil.h>
#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "tool/exit_code.h"
#include "workflow/cdl/grade.h"
#include "workflow/failure_reason.h"
#include "workflow/name_resolution.h"
#include "workflow/session.h"

namespace tool {

namespace {

// How OpenImageIO names the two spaces that file formats have marks for.
constexpr char LINEAR_TAG[] = "Linear";
constexpr char SRGB_TAG[] = "sRGB";

/// Greys that tell whether a conversion tints: black, shadows, middle grey, white, a highlight.
constexpr float PROBED_GRAYS[] = {0.0f, 0.01f, 0.18f, 0.5f, 1.0f, 4.0f};
/// Rounding apart, relative to the larger of the value and 1.
constexpr float NEUTRAL_TOLERANCE = 1e-5f;

/// Label of the colour space that `name` means; the user is told where that is not plain.
std::string find_space(const std::string& name, ColorSession& session) {
    const ResolvedSpace found = resolve_color_space(name, session.get_source().get_name());
    note_meaning(name, found, session.get_console());
    return found.label;
}

PublishedView find_view(const ConversionRequest& request, ColorSession& session) {
    PublishedView found = resolve_view(request.display, request.view, session.get_source().get_name());
    note_meaning(request.display, request.view, found, session.get_console());
    return found;
}

std::string remove_family(const std::string& label) {
    return label.substr(label.find(ColorIOManager::FAMILY_SEPARATOR) + 1);
}

} // namespace

ColorConversion::ColorConversion(ColorSession& session, const ConversionRequest& request)
    : converter(std::make_unique<ColorIOConverter>()) {
    const std::string config_name = session.get_source().get_name();
    source = find_space(request.from, session);
    if (!request.cdl.empty())
        grade = std::make_unique<Grade>(session, source, request.cdl, request.undoes_cdl);
    const std::string start = grade ? grade->get_working_space() : source;
    session.take_messages();

    bool configured;
    if (request.view.empty()) {
        target = target_space = find_space(request.to, session);
        identity = start == target;
        configured = identity || converter->configure(start.c_str(), target.c_str());
    } else {
        const PublishedView view = find_view(request, session);
        target = view.label;
        target_space = view.color_space;
        configured = converter->configure_for_display(start.c_str(), view.display.c_str(), view.view.c_str());
    }
    if (!configured)
        throw CommandError(fmt::format("cannot convert from '{}' to '{}' with {}: {}", source, target,
                                       config_name, explain_failure(session.take_messages())));
}

ColorConversion::~ColorConversion() = default;

std::string ColorConversion::get_working_space() const {
    return grade ? grade->get_working_space() : "";
}

std::string ColorConversion::get_target_tag() const {
    const std::string name = remove_family(target_space);
    if (name.empty())
        return target;
    const std::string scene_linear = remove_family(ColorIO::get_ROLE_SCENE_LINEAR().get_data());
    if (name == scene_linear && OIIO::Strutil::iequals(name, LINEAR_TAG))
        return LINEAR_TAG;
    return OIIO::Strutil::iequals(name, SRGB_TAG) ? SRGB_TAG : name;
}

bool ColorConversion::keeps_neutrals() const {
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

void ColorConversion::apply(float* rgba, unsigned int width, unsigned int height) const {
    if (grade)
        grade->apply(rgba, width, height);
    if (!identity)
        converter->convert_buffer(rgba, width, height, 4);
}

} // namespace tool
