#include "workflow/output_depth.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/file_failure.h"

namespace workflow {

namespace {

constexpr const char* DITHERED_DEPTHS[] = {"uint8", "uint10"};

bool can_be_dithered(const std::string& depth) {
    return std::find(std::begin(DITHERED_DEPTHS), std::end(DITHERED_DEPTHS), depth) !=
           std::end(DITHERED_DEPTHS);
}

void check_dithering(const image::PixelDepth& depth, const std::string& output) {
    const std::string name = depth.get_name();
    if (!can_be_dithered(name))
        diagnostics::fail_to_write(
            diagnostics::Code::IMAGE_UNSUPPORTED, output,
            fmt::format("{} cannot be dithered, only {}", name, fmt::join(DITHERED_DEPTHS, ", ")));
}

} // namespace

void check_output_options(const image::OutputOptions& options, const std::string& format,
                          const std::string& output) {
    image::check_depth(options.depth, format, output);
    image::check_compression(options.compression, format, output);
    const std::vector<std::string> depths = image::get_depth_names(format);
    if (options.dithers && options.depth.is_known())
        check_dithering(options.depth, output);
    else if (options.dithers && !depths.empty() &&
             std::none_of(depths.begin(), depths.end(), can_be_dithered))
        diagnostics::fail_to_write(diagnostics::Code::IMAGE_UNSUPPORTED, output,
                                   fmt::format("{} has no depth that can be dithered ({})", format,
                                               fmt::join(DITHERED_DEPTHS, ", ")));
}

void settle_depth(const image::OutputOptions& options, const OIIO::ImageSpec& spec, const std::string& format,
                  const std::string& output, image::PartPlan& plan) {
    const image::PixelDepth depth = image::get_depth(spec, format);
    if (options.dithers)
        check_dithering(depth, output);
    plan.quantization = {depth.get_few_codes(), options.dithers};
    const OIIO::TypeDesc wanted = options.depth.type;
    for (std::size_t i = 0; i < plan.channels.size() && wanted != OIIO::TypeUnknown; ++i) {
        const OIIO::TypeDesc type = spec.channelformat(static_cast<int>(i));
        if (plan.channels[i].layer != image::ColorLayer::NONE && type != wanted)
            diagnostics::fail_to_write(
                diagnostics::Code::IMAGE_UNSUPPORTED, output,
                fmt::format("{} does not support {}, only {}", format, wanted.c_str(), type.c_str()));
    }
}

} // namespace workflow
