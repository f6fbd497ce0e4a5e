#include "colorio/ocio/literal_paths.h"

#include <algorithm>
#include <filesystem>

#include "colorio/ocio/config.h"
#include "colorio/ocio/context_variables.h"

namespace ocio {

namespace {

namespace fs = std::filesystem;

void remove_variables(const ConfigRcPtr& config) {
    config->clearEnvironmentVars();
    config->setEnvironmentMode(library::ENV_ENVIRONMENT_LOAD_PREDEFINED);
    config->loadEnvironment();
}

/// Replaces the transform's references: names by resolved ones, files by their paths.
void resolve_names(const TransformRcPtr& transform, const std::map<std::string, std::string>& files,
                   const RewriteName& resolved) {
    if (const auto file = library::DynamicPtrCast<library::FileTransform>(transform)) {
        const auto located = files.find(file->getSrc());
        file->setSrc((located == files.end() ? resolved(file->getSrc()) : located->second).c_str());
        file->setCCCId(resolved(file->getCCCId()).c_str());
    } else if (const auto conversion = library::DynamicPtrCast<library::ColorSpaceTransform>(transform)) {
        conversion->setSrc(resolved(conversion->getSrc()).c_str());
        conversion->setDst(resolved(conversion->getDst()).c_str());
    } else if (const auto looks = library::DynamicPtrCast<library::LookTransform>(transform)) {
        looks->setSrc(resolved(looks->getSrc()).c_str());
        looks->setDst(resolved(looks->getDst()).c_str());
        looks->setLooks(resolved(looks->getLooks()).c_str());
    } else {
        rename_view_source(transform, resolved);
    }
}

/// From the sources of a conversion's files to absolute paths.
std::map<std::string, std::string> with_absolute_paths(const std::map<std::string, std::string>& files) {
    std::map<std::string, std::string> absolute;
    for (const auto& [source, path] : files)
        absolute.emplace(source, fs::absolute(path).string());
    return absolute;
}

} // namespace

Conversion with_literal_paths(const Conversion& conversion, ConversionParts& parts) {
    const auto is_misread = [](const auto& file) { return may_hold_variables(file.second); };
    if (std::none_of(parts.files.begin(), parts.files.end(), is_misread))
        return conversion;
    const ConstConfigRcPtr& config = conversion.config;
    const std::map<std::string, std::string> files = with_absolute_paths(parts.files);
    const auto resolved = [&](const std::string& text) { return resolve_variables(config, text); };
    const ConfigRcPtr copy = create_editable_copy(config);
    remove_variables(copy);
    const Conversion result = rewrite_conversion(
        copy, conversion.transform, parts.nodes,
        [&](const TransformRcPtr& transform) { resolve_names(transform, files, resolved); }, resolved);
    parts.files.clear();
    for (const auto& [source, path] : files)
        parts.files.emplace(path, path);
    return result;
}

} // namespace ocio
