#pragma once

#include <string>
#include <vector>

#include "tool/options.h"
#include "workflow/conversion.h"

namespace tool {

/// A conversion as the command line describes it; complete after `check_conversion`.
struct ConversionChoice : workflow::ConversionRequest {
    std::vector<OrderedValue> step_values; ///< Of --cdl, --look, --named-transform, --lut and --inverse.
    bool undoes_cdls = false;
};

/// Adds --from, --to, --display and --view.
void add_conversion_options(Options& options, ConversionChoice& choice, const std::string& from_help);

/// Adds --display and --view alone.
void add_view_options(Options& options, ConversionChoice& choice);

/// Adds --inverse-view.
void add_inverse_view_option(Options& options, ConversionChoice& choice);

/// Adds --cdl, --look, --named-transform, --lut, --inverse and --inverse-cdl.
void add_step_options(Options& options, ConversionChoice& choice);

/// Settles the steps. Throws UsageError for an --inverse without a step in front of it.
void take_steps(ConversionChoice& choice);

/// Settles the steps, and throws UsageError unless the choice says where to go: to one destination, back from
/// a view, or through a named transform or a LUT. `target` is how the command calls the color space that it
/// converts to.
void check_conversion(ConversionChoice& choice, const std::string& target = "--to");

} // namespace tool
