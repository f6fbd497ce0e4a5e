#pragma once

#include <cstddef>
#include <string>

#include "xml/xml_error.h"

namespace xml {
struct NodeRecord;
}

/// Name and value of an attribute. The value is null for a bare word of a processing instruction.
struct XmlAttribute {
    const char* name = nullptr;
    const char* value = nullptr;
};

/// A section whose content is kept as it stands: comment, CDATA, document type or <PRE>.
struct XmlClear {
    const char* value = nullptr;
    const char* open_tag = nullptr;
    const char* close_tag = nullptr;
};

enum class XmlContentKind { CHILD, TEXT, CLEAR, NONE };

/// One entry of a node's content in document order: the `index`-th of its children, texts or clears.
struct XmlContent {
    XmlContentKind kind = XmlContentKind::NONE;
    int index = 0;
};

/// Handle of a node of a document tree: null, or counted. Copies share the node. A tree lives as long as a
/// handle to any of its nodes, and so do the strings that its operations return.
///
/// A failed look-up returns the empty node, which like a null handle has no content and takes none, so that
/// look-ups chain: top.get_child("SOPNode").get_child("Slope").get_text(0). Names compare ignoring ASCII
/// case. No operation recurses, and none throws but create_string (std::bad_alloc). A parse that runs short
/// of memory ends with NO_ELEMENTS_FOUND, an addition adds nothing, a write is CANNOT_WRITE. Not thread safe.
class XmlNode {
public:
    XmlNode() noexcept = default;
    XmlNode(const XmlNode& other) noexcept;
    XmlNode(XmlNode&& other) noexcept;
    XmlNode& operator=(XmlNode other) noexcept;
    ~XmlNode();

    /// The document's top element, or, with a `first_tag`, the top element or child of it of that name; the
    /// empty node when `results` (may be null) has a code above the warnings. A document that starts with a
    /// declaration has the declaration as its top node, and what follows as the declaration's children; one
    /// with comments or a document type around its element has an unnamed root.
    static XmlNode parse_string(const char* text, const char* first_tag = nullptr,
                                XmlResults* results = nullptr);
    /// The same for a file: FILE_NOT_FOUND when it cannot be opened and read as one or passes 2 GiB.
    static XmlNode parse_file(const char* path, const char* first_tag = nullptr,
                              XmlResults* results = nullptr);
    /// Guesses the encoding of the file and makes it the current one, then parses. Any code but NONE, the
    /// warnings included, is reported on standard output and yields the empty node.
    static XmlNode parse_file_or_report(const char* path, const char* first_tag = nullptr,
                                        XmlResults* results = nullptr);

    /// A new tree of one node. A null `name` makes an unnamed root.
    static XmlNode create_top_node(const char* name, bool is_declaration = false);

    /// Null for an unnamed root.
    const char* get_name() const;
    /// True for the empty node and for a null handle.
    bool is_empty() const;
    bool is_declaration() const;

    int count_children() const;
    int count_children(const char* name) const;
    /// The `index`-th child in insertion order, whatever its name.
    XmlNode get_child(int index) const;
    /// The first child called `name` at or after position `*index` (0 without one); `*index` then becomes the
    /// position after it.
    XmlNode get_child(const char* name, int* index = nullptr) const;

    int count_texts() const;
    /// The `index`-th decoded text run; null when there are fewer.
    const char* get_text(int index = 0) const;
    int count_clears() const;
    XmlClear get_clear(int index) const;

    int count_attributes() const;
    const char* get_attribute_name(int index) const;
    const char* get_attribute_value(int index) const;

    /// Children, texts and clears together, in document order.
    int count_contents() const;
    XmlContent get_content(int index) const;

    /// Adds a copy of `name` at `position` of the document order (-1: at the end). Names are taken as given.
    XmlNode add_child(const char* name, bool is_declaration = false, int position = -1);
    /// The stored pair; an empty one when `name` is null.
    XmlAttribute add_attribute(const char* name, const char* value);
    /// The stored copy; null when `text` is null.
    const char* add_text(const char* text, int position = -1);

    /// The subtree as text, indented from depth `format`, or without any layout when it is -1.
    std::string create_string(int format = -1) const;
    /// Writes the same text, unterminated, to `buffer` when it is not null. Returns its length.
    std::size_t create_string(char* buffer, int format) const;
    /// Replaces the file at `path` whole or not at all. NONE, CANNOT_OPEN_FOR_WRITING or CANNOT_WRITE; for
    /// these two `errno` is the system's reason, 0 when it has no part in it. The
    /// empty node writes nothing and returns NONE. `encoding_name` is declared when the current encoding is
    /// neither UTF-8 nor Shift-JIS ("ISO-8859-1" when null); `format` asks for layout.
    XmlError write_to_file(const char* path, const char* encoding_name = nullptr, bool format = true) const;

private:
    explicit XmlNode(xml::NodeRecord* counted) noexcept;
    static XmlNode empty_node();

    xml::NodeRecord* record = nullptr;
};
