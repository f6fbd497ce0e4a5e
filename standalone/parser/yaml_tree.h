#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "standalone/parser/yaml_scalar.h"

struct YamlNode;
using YamlNodePtr = std::shared_ptr<const YamlNode>;

struct YamlList {
    std::vector<YamlNodePtr> items;
    bool is_pairs; ///< Tagged !!pairs or !!omap: maps of one pair each, which together are a map that keeps
                   ///< order and repeated names.
};

struct YamlPair {
    std::string name;
    unsigned int line;
    unsigned int column;
    YamlNodePtr value;
};

struct YamlMap {
    std::vector<YamlPair> pairs; ///< In file order, repeated names included.
};

/// One node of a YAML document. A node with an alias has several owners; none contains itself.
struct YamlNode {
    unsigned int line;
    unsigned int column;
    std::variant<YamlScalar, YamlList, YamlMap> content;
    unsigned int height = 1; ///< Levels of nodes down from this one.
};

/// Reads the single document of `text`; null when there is none. Throws YamlError.
YamlNodePtr read_yaml_tree(std::string_view text);
