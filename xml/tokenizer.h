#pragma once

#include <cstddef>
#include <new>
#include <string_view>
#include <vector>

#include "xml/characters.h"
#include "xml/clear_tags.h"
#include "xml/duplicate_names.h"
#include "xml/node_record.h"
#include "xml/references.h"
#include "xml/xml_settings.h"

namespace xml {

/// Returns `allocated`; throws std::bad_alloc when it is null.
template <class T>
T* require(T* allocated) {
    if (allocated == nullptr)
        throw std::bad_alloc();
    return allocated;
}

/// The text from `begin` up to `end`.
inline std::string_view view(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

/// Reads one text into a tree. The text is cut into the tree's strings in place: their terminators overwrite
/// the markup after each, and strings that must be decoded are copied into the document.
///
/// An error stops the reading. Its offset is that of the first invalid character; of the opening, for a clear
/// section or instruction without an end; of the ampersand, for a reference; and of the end tag, for an
/// unmatched one. Throws only std::bad_alloc.
class Tokenizer {
public:
    /// `text` is writable, zero-terminated at `length`, and belongs to the document.
    Tokenizer(Document& document, char* text, std::size_t length, const XmlSettings& settings);

    /// Adds the content of the text to `root`. To be called once.
    void read_into(NodeRecord& root);

    /// NONE, UNMATCHED_END_TAG_WARNING, NO_TAG_FOUND_WARNING (no element) or the error that stopped it.
    XmlError get_error() const { return error; }
    /// Offset of the error or first warning; the end of the text without one.
    std::size_t get_error_offset() const { return static_cast<std::size_t>(error_place - text); }
    /// Offsets of the line feeds that were overwritten, ascending.
    const std::vector<std::size_t>& get_lost_line_feeds() const { return lost_line_feeds; }

private:
    struct PendingContent {
        void* item; ///< NodeRecord*, or char* of a text or clear section
        XmlContentKind kind;
        ClearTagIndex clear_tag;
    };
    struct OpenNode {
        NodeRecord* node;
        std::size_t first_content; ///< position of its first entry in `contents`
        std::size_t name_length;
    };
    /// The run that later runs are joined to, with its spare room.
    struct JoinedText {
        char* text = nullptr;
        std::size_t length = 0;
        std::size_t room = 0;
    };

    bool read_text();
    bool scan_text(char*& at, const char*& first_undecoded);
    std::size_t whole_length(const char* at, char quote) const;
    bool accept_run_here(const char* run, const char* decoded);
    bool ends_document_type(const char* decoded) const;
    const char* store_text(char* begin, char* end, const char* first_undecoded);
    bool continues_text_before_comment() const;
    void join_text(const char* addition);

    bool read_markup();
    bool read_start_tag();
    bool read_attributes(char*& at);
    bool read_attribute(char*& at);
    bool scan_value(char*& at, char quote, const char*& first_undecoded);
    bool check_attribute_names();
    bool finish_start_tag(char* at);
    bool read_end_tag();
    bool close_to(std::string_view name, const char* place);
    bool read_clear(const ClearTag& tag);
    bool accept_clear_here(ClearTagIndex tag) const;
    bool scan_verbatim(char*& at, std::string_view close);
    bool read_instruction();
    bool scan_instruction(char*& at);
    bool check_declaration_here(const char* content, const char* end);
    void read_pseudo_attributes(char* at, char* end);
    char* find_pseudo_value(char* name_end, char* end, char*& value) const;

    std::int32_t count_lines(const char* place);
    void open_node(char* name, std::size_t name_length, bool is_declaration);
    void close_last();
    void attach_attributes(NodeRecord& node);
    void attach_contents(NodeRecord& node, std::size_t first_content);
    void add_pseudo_attribute(char* name, char* name_end, char* value, char* value_end);
    void terminate(char* at);
    bool fail(XmlError code, const char* place);

    Document& document;
    const CharacterTable& characters;
    const XmlSettings settings;
    char* const text;
    char* const text_end;
    char* cursor;

    XmlError error = XmlError::NONE;
    const char* error_place;
    const char* stray_text = nullptr; ///< text before the document element
    std::size_t open_elements = 0;    ///< open nodes that are not declarations
    bool element_seen = false;
    bool document_type_seen = false;
    char type_lacks =
        '\0'; ///< what ends the literal or subset that the document type was cut in; follows as text

    std::vector<OpenNode> open_nodes;
    std::vector<PendingContent> contents;
    std::vector<XmlAttribute> attributes;
    std::vector<std::string_view> attribute_names;
    DuplicateFinder duplicates;
    JoinedText joined;
    std::vector<std::size_t> lost_line_feeds;
    std::size_t counted_lost_line_feeds = 0; ///< those before `line_place`
    const char* line_place;                  ///< where `line` was counted
    std::int32_t line = 1;
};

} // namespace xml
