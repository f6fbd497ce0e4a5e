#include "colorio/ocio/variable_check.h"

#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/transform_graph.h"
#include "colorio/ocio/variable_expansion.h"

namespace ocio {

namespace {

/// Empty for what is not a text file, such as an archive.
std::optional<std::string> read_yaml(const std::string& path) {
    constexpr std::string_view ARCHIVE_MARK = "PK";
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    return text.compare(0, ARCHIVE_MARK.size(), ARCHIVE_MARK) == 0 ? std::nullopt : std::optional(text);
}

} // namespace

void require_bounded_variables(const ConstConfigRcPtr& config, const std::string& path) {
    VariableExpansion expansion(*get_variables(config));
    for (int i = 0; i < config->getNumEnvironmentVars(); ++i)
        expansion.require_bounded_value(config->getEnvironmentVarNameByIndex(i));
    expansion.require_bounded(config->getWorkingDir());
    const std::optional<std::string> yaml = read_yaml(path);
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
