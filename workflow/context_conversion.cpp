#include "workflow/context_conversion.h"

#include <optional>

#include "workflow/context_variables.h"
#include "workflow/session.h"

namespace workflow {

Conversion make_conversion(Session& session, const ConversionRequest& request,
                           const std::vector<std::string>& context) {
    if (context.empty())
        return Conversion(session, request);
    const std::vector<std::string> before = session.get_context();
    session.use_context(merge_contexts(before, context));
    std::optional<Conversion> conversion;
    try {
        conversion.emplace(session, request);
    } catch (...) {
        session.use_context(before);
        throw;
    }
    session.use_context(before);
    return std::move(*conversion);
}

} // namespace workflow
