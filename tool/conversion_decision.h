#pragma once

#include <string>

namespace tool {

class ColorConversion;
class ColorSession;
class Console;
struct ConversionRequest;

/// The colour space that the associations give the file at `path`, and why: "from the built-in associations,
/// category Open EXR". Throws CommandError when the configuration lacks it.
struct AssociatedSpace {
    std::string color_space;
    std::string reason;
};
AssociatedSpace find_associated_space(const std::string& path, const ColorSession& session);

/// Prints how both ends of a conversion were found. `source_reason` is empty when the user named the source.
void print_decision(const ColorSession& session, const ConversionRequest& request,
                    const ColorConversion& conversion, const std::string& source_reason, Console& console);

} // namespace tool
