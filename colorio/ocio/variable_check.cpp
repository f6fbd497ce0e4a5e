#include "colorio/ocio/variable_check.h"

#include <optional>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/config_text.h"
#include "colorio/ocio/transform_graph.h"
#include "colorio/ocio/variable_expansion.h"

namespace ocio {

void require_bounded_variables(const ConstConfigRcPtr& config, const std::string& path) {
    VariableExpansion expansion(*get_variables(config));
    for (int i = 0; i < config->getNumEnvironmentVars(); ++i)
        expansion.require_bounded_value(config->getEnvironmentVarNameByIndex(i));
    expansion.require_bounded(config->getWorkingDir());
    const std::optional<std::string> yaml = read_config_text(path);
    if (yaml && !expansion.may_be_used_in(*yaml))
        return;
    for (const std::string& entry : search_path_entries(config))
        expansion.require_bounded(entry);
    const TransformGraph graph(config);
    for (const GraphNode& node : graph.get_nodes())
        for (const std::string& text : graph.dependencies_of(node).texts)
            expansion.require_bounded(text);
}

} // namespace ocio
