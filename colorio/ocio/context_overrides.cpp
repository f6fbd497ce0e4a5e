#include "colorio/ocio/context_overrides.h"

#include <algorithm>
#include <utility>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/transform_graph.h"

namespace ocio {

namespace {

ContextVariables& get_overrides() {
    static ContextVariables overrides;
    return overrides;
}

/// The three spellings that OpenColorIO replaces.
bool names(const std::string& text, const std::string& variable) {
    for (const std::string& spelling : {"${" + variable + "}", "$" + variable, "%" + variable + "%"})
        if (text.find(spelling) != std::string::npos)
            return true;
    return false;
}

} // namespace

void set_context_overrides(ContextVariables variables) {
    get_overrides() = std::move(variables);
}

ConstConfigRcPtr with_context_overrides(const ConstConfigRcPtr& config) {
    if (get_overrides().empty())
        return config;
    const ConfigRcPtr copy = copy_config(config);
    for (const auto& [name, value] : get_overrides())
        copy->addEnvironmentVar(name.c_str(), value.c_str());
    return copy;
}

bool uses_context_variable(const ConstConfigRcPtr& config, const std::string& name) {
    std::vector<std::string> texts = search_path_entries(config);
    texts.emplace_back(config->getWorkingDir());
    for (int i = 0; i < config->getNumEnvironmentVars(); ++i)
        texts.emplace_back(config->getEnvironmentVarDefault(config->getEnvironmentVarNameByIndex(i)));
    const TransformGraph graph(config);
    for (const GraphNode& node : graph.get_nodes()) {
        const Dependencies found = graph.dependencies_of(node);
        texts.insert(texts.end(), found.texts.begin(), found.texts.end());
    }
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& text) { return names(text, name); });
}

} // namespace ocio
