#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "xml/characters.h"
#include "xml/node_record.h"

namespace xml {

/// Where serialised text goes, piece by piece.
class TextSink {
public:
    virtual ~TextSink() = default;
    virtual void write(std::string_view piece) = 0;
};

constexpr int NO_LAYOUT = -1;

/// Turns a subtree into text that parses into an equal one. With layout every element, text and clear section
/// has its own line, indented by one tab per level, however deep; a declaration and an unnamed root stand at
/// the level of their content.
///
/// The five characters of the entity table become entities. A byte that a reader would refuse or change
/// becomes a character reference: control characters, bytes that make no character of the current encoding,
/// line ends in attribute values, and, while white space is dropped, the blank at either end of a text.
class Serializer {
public:
    /// `depth` is the starting level or NO_LAYOUT. A declaration's encoding attribute that names a wide
    /// encoding is written as `byte_encoding`, unless that is null.
    Serializer(TextSink& output, int depth, const char* byte_encoding = nullptr);

    void write(const NodeRecord& top);

private:
    struct OpenNode {
        const NodeRecord* node;
        std::int32_t next_content;
        int depth;
    };

    void open(const NodeRecord& node, int depth);
    void close(const OpenNode& closing);
    void write_attributes(const NodeRecord& node);
    void write_content(const NodeRecord& node, XmlContent content, int depth);
    void write_text(std::string_view text);
    void write_escaped(std::string_view text, bool is_value);
    std::size_t verbatim_length(std::string_view text, bool is_value) const;
    void write_reference(char byte);
    void begin_line(int depth);
    void end_line();

    TextSink& sink;
    const int start_depth;
    const char* const replaced_encoding;
    const CharacterTable& characters;
    const bool drop_white_space;
    std::vector<OpenNode> open_nodes;
};

} // namespace xml
