#pragma once

#include <string>
#include <vector>

#include "workflow/conversion.h"
#include "workflow/file_space.h"

namespace workflow {

class Session;

/// What a program calls the parts of a ConversionRequest, for explanations: its options.
struct RequestWords {
    const char* from;
    const char* to;
    const char* inverse_view;
};

/// A line of an explanation.
struct DecisionLine {
    std::string what;   ///< "source", "CDL", "destination", "written as".
    std::string answer; ///< "Tavelion|sRGB, from the file rule 'exr' of show.ocio".
};

/// How source and destination of a conversion were found, in the order of a conversion, the source first.
/// `file_space` is that of the image, if it decided the source; else empty. Throws diagnostics::Failure for
/// names that the config of the session does not have.
std::vector<DecisionLine> explain_decision(const Session& session, const ConversionRequest& request,
                                           const Conversion& conversion, const FileSpace& file_space,
                                           const RequestWords& words);

} // namespace workflow
