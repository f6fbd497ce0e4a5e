#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

#include "image/part_plan.h"

namespace workflow {

/// Throws diagnostics::Failure when a file of `format` at `output` cannot have the depth, the dithering or
/// the compression of the options.
void check_output_options(const image::OutputOptions& options, const std::string& format,
                          const std::string& output);

/// Plans the rounding of colors for the depth that the opened file has, `spec`: the writer may have chosen
/// another one than was asked for. Throws diagnostics::Failure when that was an explicit wish, or when the
/// depth cannot be dithered.
void settle_depth(const image::OutputOptions& options, const OIIO::ImageSpec& spec, const std::string& format,
                  const std::string& output, image::PartPlan& plan);

} // namespace workflow
