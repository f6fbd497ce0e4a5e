#include "colorio/ocio/source_files.h"

#include <filesystem>
#include <set>

#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/search_folders.h"
#include "colorio/ocio/transform_graph.h"

namespace ocio {

namespace {

/// As the config spells them, each once.
std::set<std::string> get_file_names(const ConstConfigRcPtr& config) {
    const TransformGraph graph(config);
    std::set<std::string> names;
    for (const GraphNode& node : graph.get_nodes()) {
        for (const FileUse& file : graph.dependencies_of(node).files)
            names.insert(file.source);
    }
    return names;
}

} // namespace

std::vector<std::string> get_source_files(const ConstConfigRcPtr& config) {
    const std::vector<std::string> folders = get_search_folders(config);
    std::set<std::string> paths;
    for (const std::string& name : get_file_names(config)) {
        const std::filesystem::path file = resolve_variables(config, name);
        if (file.empty())
            continue;
        for (const std::string& folder : folders)
            paths.insert((folder / file).lexically_normal().string());
    }
    return {paths.begin(), paths.end()};
}

} // namespace ocio
