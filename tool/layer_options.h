#pragma once

#include <string>

#include "tool/options.h"
#include "workflow/layer_choice.h"

namespace tool {

/// Adds --layers, --parts and --skip.
void add_layer_options(Options& options, workflow::LayerOptions& layers);

/// For the end of a result line: "; converted rgba, diffuse; left Z (data)". Empty when there is but one
/// layer, which was converted.
std::string describe_layers(const workflow::LayerReport& report);

} // namespace tool
