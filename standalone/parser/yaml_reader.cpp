#include "standalone/parser/yaml_reader.h"

#include <new>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "standalone/parser/yaml_error.h"
#include "standalone/parser/yaml_limits.h"
#include "standalone/parser/yaml_tree.h"

namespace {

// Fills groups from a tree. Aliases share nodes of the tree, so its entries can be many more than its nodes.
class GroupFiller {
public:
    void fill_root(ParserGroup& group, const YamlNode& node) {
        if (is_null(node))
            return;
        if (std::holds_alternative<YamlScalar>(node.content))
            refuse(node, "a value where the file's entries are expected");
        fill(group, node);
    }

private:
    [[noreturn]] static void refuse(const YamlNode& node, const std::string& reason) {
        throw YamlError(node.line, node.column, reason);
    }

    static bool is_null(const YamlNode& node) {
        const auto* scalar = std::get_if<YamlScalar>(&node.content);
        return scalar && std::holds_alternative<std::monostate>(*scalar);
    }

    static bool is_group(const YamlNode& node) {
        const auto* list = std::get_if<YamlList>(&node.content);
        return list ? list->is_pairs : std::holds_alternative<YamlMap>(node.content);
    }

    void fill(ParserGroup& group, const YamlNode& node) {
        if (++depth > MAX_GROUP_DEPTH)
            refuse(node, "groups nested deeper than " + std::to_string(MAX_GROUP_DEPTH) + " levels");
        add_entries(group, node);
        --depth;
    }

    void add_entries(ParserGroup& group, const YamlNode& node) {
        if (const auto* map = std::get_if<YamlMap>(&node.content)) {
            for (const YamlPair& pair : map->pairs)
                add_entry(group, pair);
            return;
        }
        for (const YamlNodePtr& item : std::get<YamlList>(node.content).items) {
            const auto* map = std::get_if<YamlMap>(&item->content);
            if (!map || map->pairs.size() != 1)
                refuse(*item, "something else than one name with its value in a list of such pairs");
            add_entry(group, map->pairs.front());
        }
    }

    void add_entry(ParserGroup& group, const YamlPair& pair) {
        spend(*pair.value);
        spend_text(*pair.value, pair.name.size());
        ParserEntry& entry =
            *group.add_entry(CoreString(std::string_view(pair.name)), pair.line, pair.column);
        const auto* list = std::get_if<YamlList>(&pair.value->content);
        if (!list || list->is_pairs) {
            if (!is_null(*pair.value))
                add_value(group, entry, *pair.value);
            return;
        }
        for (const YamlNodePtr& item : list->items)
            add_value(group, entry, *item);
    }

    void add_value(ParserGroup& parent, ParserEntry& entry, const YamlNode& node) {
        spend(node);
        if (is_group(node))
            fill(*entry.add_group(&parent), node);
        else if (const auto* scalar = std::get_if<YamlScalar>(&node.content))
            add_scalar(entry, node, *scalar);
        else
            refuse(node, "a list inside a list");
    }

    void add_scalar(ParserEntry& entry, const YamlNode& node, const YamlScalar& scalar) {
        if (const auto* text = std::get_if<std::string>(&scalar)) {
            spend_text(node, text->size());
            entry.add_string(CoreString(std::string_view(*text)));
        } else if (const int* integer = std::get_if<int>(&scalar)) {
            entry.add_int(*integer);
        } else if (const double* real = std::get_if<double>(&scalar)) {
            entry.add_double(*real);
        } else {
            entry.add_string({});
        }
    }

    // Called once for every entry and every value.
    void spend(const YamlNode& node) {
        if (++value_count > MAX_VALUE_COUNT)
            refuse(node, "too many values once every alias is replaced by its value");
    }

    void spend_text(const YamlNode& node, size_t size) {
        text_size += size;
        if (text_size > MAX_TEXT_SIZE)
            refuse(node, "too much text once every alias is replaced by its value");
    }

    unsigned int depth = 0;
    size_t value_count = 0;
    size_t text_size = 0;
};

} // namespace

std::string YamlFault::describe() const {
    const std::string place = line ? ":" + std::to_string(line) + ":" + std::to_string(column) : "";
    return place + ": " + reason;
}

std::optional<YamlFault> read_yaml(std::string_view text, ParserGroup& group) {
    try {
        if (const YamlNodePtr root = read_yaml_tree(text))
            GroupFiller().fill_root(group, *root);
        return std::nullopt;
    } catch (const YamlError& error) {
        return YamlFault{error.line, error.line ? error.column : 0, error.what()};
    }
}
