#include "tool/sequence_options.h"
#include "workflow/memory_budget.h"

namespace tool {

workflow::SequenceOptions make_sequence_options(const SequenceChoice& choice) {
    workflow::SequenceOptions options;
    options.resumes = choice.resumes;
    options.only_plans = choice.only_plans;
    options.memory =
        choice.memory.empty() ? workflow::get_default_memory() : workflow::parse_memory_size(choice.memory);
    return options;
}

} // namespace tool
