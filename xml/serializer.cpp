#include "xml/serializer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "xml/declaration_grammar.h"
#include "xml/references.h"
#include "xml/xml_settings.h"

namespace xml {

namespace {

constexpr std::string_view TABS = "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";

bool is_named(const NodeRecord& node) {
    return node.name != nullptr && *node.name != '\0';
}

// A blank, so that an element is not read as the clear section with the same open tag.
std::string_view open_tag_end(const NodeRecord& node) {
    return node.attribute_count == 0 && std::strcmp(node.name, "PRE") == 0 ? " >" : ">";
}

const Entity* find_entity(char character) {
    const auto* found = std::find_if(ENTITIES.begin(), ENTITIES.end(), [character](const Entity& entity) {
        return entity.character == character;
    });
    return found != ENTITIES.end() ? found : nullptr;
}

} // namespace

Serializer::Serializer(TextSink& output, int depth, const char* byte_encoding)
    : sink(output), start_depth(std::max(depth, NO_LAYOUT)), replaced_encoding(byte_encoding),
      characters(CharacterTable::of(get_xml_settings().encoding)),
      drop_white_space(get_xml_settings().drop_white_space) {}

void Serializer::write(const NodeRecord& top) {
    open(top, start_depth);
    while (!open_nodes.empty()) {
        OpenNode& last = open_nodes.back();
        if (last.next_content < last.node->content_count()) {
            const bool deeper = is_named(*last.node) && !last.node->is_declaration && last.depth != NO_LAYOUT;
            write_content(*last.node, last.node->content(last.next_content++), last.depth + (deeper ? 1 : 0));
        } else {
            const OpenNode closing = last;
            open_nodes.pop_back();
            close(closing);
        }
    }
}

// Writes the open tag. A node with content stays open.
void Serializer::open(const NodeRecord& node, int depth) {
    const bool has_content = node.content_count() > 0;
    if (is_named(node)) {
        begin_line(depth);
        sink.write(node.is_declaration ? "<?" : "<");
        sink.write(node.name);
        write_attributes(node);
        if (node.is_declaration)
            sink.write("?>");
        else
            sink.write(has_content ? open_tag_end(node) : "/>");
        end_line();
    }
    if (has_content)
        open_nodes.push_back({&node, 0, depth});
}

void Serializer::close(const OpenNode& closing) {
    if (!is_named(*closing.node) || closing.node->is_declaration)
        return;
    begin_line(closing.depth);
    sink.write("</");
    sink.write(closing.node->name);
    sink.write(">");
    end_line();
}

// A null value is a bare word in a declaration; elements have no bare words, so there it becomes an empty
// value.
void Serializer::write_attributes(const NodeRecord& node) {
    for (std::int32_t i = 0; i < node.attribute_count; ++i) {
        const XmlAttribute& attribute = node.attributes[i];
        sink.write(" ");
        sink.write(attribute.name);
        if (attribute.value == nullptr && node.is_declaration)
            continue;
        const char* value = attribute.value != nullptr ? attribute.value : "";
        const bool is_wrong = replaced_encoding != nullptr && node.is_declaration &&
                              names_equal(attribute.name, "encoding") && is_wide_encoding(value);
        sink.write("=\"");
        write_escaped(is_wrong ? replaced_encoding : value, true);
        sink.write("\"");
    }
}

void Serializer::write_content(const NodeRecord& node, XmlContent content, int depth) {
    if (content.kind == XmlContentKind::CHILD) {
        open(*node.children[content.index], depth);
        return;
    }
    if (content.kind == XmlContentKind::TEXT && *node.texts[content.index] == '\0')
        return;
    begin_line(depth);
    if (content.kind == XmlContentKind::TEXT) {
        write_text(node.texts[content.index]);
    } else {
        const XmlClear& clear = node.clears[content.index];
        sink.write(clear.open_tag);
        sink.write(clear.value);
        sink.write(clear.close_tag);
    }
    end_line();
}

void Serializer::write_text(std::string_view text) {
    const bool guard_first = drop_white_space && characters.is(text.front(), BLANK);
    const bool guard_last = drop_white_space && text.size() > 1 && characters.is(text.back(), BLANK);
    if (guard_first)
        write_reference(text.front());
    write_escaped(
        text.substr(guard_first ? 1 : 0, text.size() - (guard_first ? 1 : 0) - (guard_last ? 1 : 0)), false);
    if (guard_last)
        write_reference(text.back());
}

void Serializer::write_escaped(std::string_view text, bool is_value) {
    while (!text.empty()) {
        const std::size_t length = verbatim_length(text, is_value);
        if (length > 0)
            sink.write(text.substr(0, length));
        text.remove_prefix(length);
        if (text.empty())
            return;
        if (const Entity* entity = find_entity(text.front()))
            sink.write(entity->reference);
        else
            write_reference(text.front());
        text.remove_prefix(1);
    }
}

// Count of bytes from the start that can be written unchanged.
std::size_t Serializer::verbatim_length(std::string_view text, bool is_value) const {
    const unsigned stops = ENTITY | (is_value ? VALUE_STOP : TEXT_STOP);
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        if (!characters.is(*at, stops)) {
            ++at;
            continue;
        }
        const bool is_fine_as_text = *at == ']' || characters.is(*at, HIGH);
        const std::size_t length = is_fine_as_text ? characters.character_length(at, end) : 0;
        if (length == 0)
            break;
        at += length;
    }
    return static_cast<std::size_t>(at - text.data());
}

void Serializer::write_reference(char byte) {
    std::array<char, 8> reference = {'&', '#'};
    const auto result = std::to_chars(reference.data() + 2, reference.data() + reference.size(),
                                      static_cast<unsigned>(static_cast<unsigned char>(byte)));
    *result.ptr = ';';
    sink.write({reference.data(), static_cast<std::size_t>(result.ptr + 1 - reference.data())});
}

void Serializer::begin_line(int depth) {
    for (auto left = static_cast<std::size_t>(std::max(depth, 0)); left > 0;) {
        const std::string_view tabs = TABS.substr(0, left);
        sink.write(tabs);
        left -= tabs.size();
    }
}

void Serializer::end_line() {
    if (start_depth != NO_LAYOUT)
        sink.write("\n");
}

} // namespace xml
