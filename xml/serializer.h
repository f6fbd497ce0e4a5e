#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "xml/characters.h"
#include "xml/node_record.h"

namespace xml {

/// Receives serialized text, piece by piece.
class TextSink {
public:
    virtual ~TextSink() = default;
    /// Takes the next piece, which is valid during the call only.
    virtual void write(std::string_view piece) = 0;
};

/// A depth: no indentation and no line ends are added.
constexpr int NO_LAYOUT = -1;

/// Writes a subtree as text that parses into an equal one. With layout every element, text and clear section
/// is on a separate line, indented by one tab per level without a limit; a declaration and an unnamed root
/// are at the level of their content.
///
/// The five characters with entities become entities. Bytes that a parser would refuse or change become
/// character references: control characters, bytes that are not characters of the current encoding, line ends
/// in attribute values, and, if XmlSettings::drop_white_space, the blank at either end of a text.
class Serializer {
public:
    /// `depth` is the starting level or NO_LAYOUT. A declaration's encoding attribute that names a wide
    /// encoding is written as `byte_encoding`, unless that is null.
    Serializer(TextSink& output, int depth, const char* byte_encoding = nullptr);

    /// Writes `top` and everything below it. Throws std::bad_alloc and what the sink throws.
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
