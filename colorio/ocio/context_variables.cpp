#include "colorio/ocio/context_variables.h"

#include "colorio/ocio/config_side.h"

namespace ocio {

std::string resolve_variables(const ConstConfigRcPtr& config, const std::string& text) {
    if (!may_hold_variables(text))
        return text;
    const library::ConstContextRcPtr variables = get_variables(config);
    VariableExpansion(*variables).require_bounded(text);
    return variables->resolveStringVar(text.c_str());
}

} // namespace ocio
