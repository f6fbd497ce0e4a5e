#pragma once

#include <string>

#include "tool/options.h"
#include "workflow/sequence.h"

namespace tool {

/// What the command line says of a sequence.
struct SequenceChoice {
    std::string frames; ///< Empty for those that exist.
    std::string memory; ///< Empty for half of the machine's.
    bool resumes = false;
    bool only_plans = false;
    bool is_quiet = false;
    bool as_json = false;
};

/// Adds --frames, --resume, --dry-run, --memory, --quiet and --json.
void add_sequence_options(Options& options, SequenceChoice& choice);

/// Throws diagnostics::Failure for an invalid size.
workflow::SequenceOptions make_sequence_options(const SequenceChoice& choice);

} // namespace tool
