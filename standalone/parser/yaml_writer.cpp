#include "standalone/parser/yaml_writer.h"

#include <unordered_set>
#include <utility>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "standalone/parser/yaml_limits.h"
#include "standalone/parser/yaml_scalar.h"
#include "standalone/parser/yaml_text.h"

namespace {

constexpr size_t INDENT = 2;

// Why entries cannot be written; never leaves this file.
struct TooMuch {
    std::string reason;
};

bool has_repeated_names(const ParserGroup& group) {
    std::unordered_set<std::string_view> names;
    for (unsigned int i = 0; i < group.get_entry_count(); ++i)
        if (!names.insert(group.get_entry(i)->get_name().view()).second)
            return true;
    return false;
}

bool holds_groups(const ParserEntry& entry) {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i)
        if (entry.is_value_group(i))
            return true;
    return false;
}

std::string scalar_text(const ParserEntry& entry, unsigned int index) {
    if (entry.is_value_string(index))
        return quote_yaml(entry.get_string(index).view());
    if (entry.is_value_double(index))
        return real_to_yaml(entry.get_double(index));
    return std::string(entry.get_string(index).view());
}

// Writes blocks: lines that each begin with the block's indentation. What follows "name:" on its line is
// either a scalar or flow text, or a tag, or nothing, and then a deeper block.
class Writer {
public:
    std::string text;

    // The group after the "name:", the "-" or the start of the file that it belongs to.
    void add_group(const ParserGroup& group, size_t indent, unsigned int depth) {
        if (depth > MAX_GROUP_DEPTH)
            throw TooMuch{"groups nested deeper than " + std::to_string(MAX_GROUP_DEPTH) + " levels"};
        if (group.get_entry_count() == 0) {
            text += " {}\n";
            return;
        }
        const bool repeats = has_repeated_names(group);
        text += repeats ? " !!pairs\n" : "\n";
        for (unsigned int i = 0; i < group.get_entry_count(); ++i) {
            text.append(indent, ' ');
            if (repeats)
                text += "- ";
            add_entry(*group.get_entry(i), indent + (repeats ? INDENT : 0), depth);
        }
    }

private:
    void add_entry(const ParserEntry& entry, size_t indent, unsigned int depth) {
        text += quote_yaml_name(entry.get_name().view(), indent);
        const unsigned int count = entry.get_value_count();
        value_count += 1 + size_t{count};
        if (value_count > MAX_VALUE_COUNT)
            throw TooMuch{"more than " + std::to_string(MAX_VALUE_COUNT) + " entries and values"};
        if (count == 0)
            text += "\n";
        else if (count == 1)
            add_value(entry, 0, indent, depth);
        else if (holds_groups(entry))
            add_block_list(entry, indent + INDENT, depth);
        else
            add_flow_list(entry);
    }

    void add_value(const ParserEntry& entry, unsigned int index, size_t indent, unsigned int depth) {
        if (const ParserGroup* group = entry.get_group(index))
            add_group(*group, indent + INDENT, depth + 1);
        else
            text += " " + scalar_text(entry, index) + "\n";
    }

    void add_block_list(const ParserEntry& entry, size_t indent, unsigned int depth) {
        text += "\n";
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            text.append(indent, ' ');
            text += "-";
            add_value(entry, i, indent, depth);
        }
    }

    void add_flow_list(const ParserEntry& entry) {
        text += " [";
        for (unsigned int i = 0; i < entry.get_value_count(); ++i)
            text += (i ? ", " : "") + scalar_text(entry, i);
        text += "]\n";
    }

    size_t value_count = 0;
};

} // namespace

YamlText write_yaml(const ParserGroup& group) {
    Writer writer;
    try {
        writer.add_group(group, 0, 1);
    } catch (const TooMuch& refusal) {
        return {std::nullopt, refusal.reason};
    }
    // The root follows nothing, so the blank or line end that would part it from a name is not needed.
    writer.text.erase(0, 1);
    if (writer.text.size() > MAX_FILE_SIZE)
        return {std::nullopt, "more than " + std::to_string(MAX_FILE_SIZE) + " bytes"};
    return {std::move(writer.text), {}};
}
