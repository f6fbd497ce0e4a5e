#include "colorio/ocio/config_structure.h"

#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <utility>

#include "colorio/ocio/config_text.h"

namespace ocio {

namespace {

constexpr char VERSION_KEY[] = "ocio_profile_version";
constexpr const char* COLOR_SPACE_LISTS[] = {"colorspaces", "display_colorspaces"};
constexpr const char* MAPS[] = {"roles", "displays", "environment"};

/// At the first character for a node without a place: that of an empty file.
YamlError make_error(const YAML::Node& node, std::string reason) {
    const YAML::Mark mark = node.Mark();
    if (mark.is_null())
        return {1, 1, std::move(reason)};
    return {static_cast<unsigned int>(mark.line + 1), static_cast<unsigned int>(mark.column + 1),
            std::move(reason)};
}

std::string lower_case(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// Looks at the parts of a config in turn; the first error stays.
class StructureCheck {
public:
    explicit StructureCheck(const YAML::Node& config) : config_(config) {}

    std::optional<YamlError> run() {
        if (!config_.IsMap() || !config_[VERSION_KEY])
            return make_error(config_, std::string("it is not an OCIO config: the key ") + VERSION_KEY +
                                           " is missing");
        for (const char* key : MAPS)
            require(key, &YAML::Node::IsMap, "a map");
        for (const char* key : COLOR_SPACE_LISTS)
            require(key, &YAML::Node::IsSequence, "a list");
        for (const char* key : COLOR_SPACE_LISTS)
            check_names(config_[key]);
        return first_;
    }

private:
    void require(const char* key, bool (YAML::Node::*is_right)() const, const char* kind) {
        const YAML::Node value = config_[key];
        if (!first_ && value && !value.IsNull() && !(value.*is_right)())
            first_ = make_error(value, std::string("the value of ") + key + " must be " + kind);
    }

    void check_names(const YAML::Node& spaces) {
        if (first_ || !spaces)
            return;
        for (const YAML::Node& space : spaces) {
            const YAML::Node name = space.IsMap() ? space["name"] : YAML::Node();
            if (!name || !name.IsScalar())
                first_ = make_error(space, "a color space without a name");
            else if (const auto [known, is_new] = lines_.emplace(lower_case(name.Scalar()), name.Mark().line);
                     !is_new)
                first_ =
                    make_error(name, "the name '" + name.Scalar() + "' is taken by the color space of line " +
                                         std::to_string(known->second + 1));
            if (first_)
                return;
        }
    }

    const YAML::Node config_;
    std::map<std::string, int> lines_; ///< Of the names, from 0.
    std::optional<YamlError> first_;
};

} // namespace

std::optional<YamlError> find_structure_error(const std::string& path) {
    const std::optional<std::string> text = read_config_text(path);
    if (!text)
        return std::nullopt;
    try {
        return StructureCheck(YAML::Load(*text)).run();
    } catch (const YAML::Exception&) {
        return std::nullopt; // find_yaml_error tells why
    }
}

} // namespace ocio
