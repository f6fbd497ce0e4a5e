#pragma once

#include <cstddef>
#include <string>

#include "xml/xml_content.h"
#include "xml/xml_error.h"

namespace xml {
struct NodeRecord;
}

/// Reference-counted handle of a node of a document tree, or null. Copies share the node. A tree lives as
/// long as a handle to any of its nodes, and so do the strings that its operations return.
///
/// A failed lookup returns the empty node, which like a null handle has no content and accepts none, so that
/// lookups chain: top.get_child("SOPNode").get_child("Slope").get_text(0). Names compare ignoring ASCII case.
/// No operation recurses, and only create_string throws (std::bad_alloc). When memory is short, a parse ends
/// with NO_ELEMENTS_FOUND, an addition adds nothing, a write returns CANNOT_WRITE. Not thread-safe, not even
/// for different trees: they share the empty node's count and the settings.
class XmlNode {
public:
    XmlNode() noexcept = default;
    XmlNode(const XmlNode& other) noexcept;
    XmlNode(XmlNode&& other) noexcept;
    XmlNode& operator=(XmlNode other) noexcept;
    ~XmlNode();

    /// The document's top element, or, with `first_tag`, the top element or its child of that name; the empty
    /// node for an error (not for a warning), which is in `results` (may be null). A document that starts
    /// with a declaration has the declaration as its top node, and everything after it as the declaration's
    /// children; one with comments or a document type outside its element has an unnamed root.
    static XmlNode parse_string(const char* text, const char* first_tag = nullptr,
                                XmlResults* results = nullptr);
    /// The same for a regular file; FILE_NOT_FOUND when it cannot be opened or read, or exceeds 2 GiB.
    static XmlNode parse_file(const char* path, const char* first_tag = nullptr,
                              XmlResults* results = nullptr);
    /// Parses the file in its guessed encoding. The current encoding stays, and nothing is printed.
    static XmlNode parse_file_as_guessed(const char* path, const char* first_tag = nullptr,
                                         XmlResults* results = nullptr);
    /// Guesses the encoding of the file and makes it the current one (see XmlSettings), then parses. Any code
    /// but NONE, warnings included, is reported on standard output and returns the empty node.
    static XmlNode parse_file_or_report(const char* path, const char* first_tag = nullptr,
                                        XmlResults* results = nullptr);

    /// A new tree with one node; a null `name` makes an unnamed root. The empty node when memory is short.
    static XmlNode create_top_node(const char* name, bool is_declaration = false);

    /// Null for an unnamed root.
    const char* get_name() const;
    /// True for the empty node and for a null handle.
    bool is_empty() const;
    /// True for a declaration or a processing instruction, "<?...?>".
    bool is_declaration() const;
    /// The line that its start tag began on in the parsed text, from 1; 0 for a node that was added, an
    /// unnamed root and a null handle.
    int get_line() const;

    /// Count of all children.
    int count_children() const;
    /// Count of the children called `name`.
    int count_children(const char* name) const;
    /// The `index`-th child of any name, in insertion order; the empty node past the end.
    XmlNode get_child(int index) const;
    /// The first child called `name` at or after position `*index` (0 without one); `*index` then becomes the
    /// position after it. The empty node when there is none; `*index` is then unchanged.
    XmlNode get_child(const char* name, int* index = nullptr) const;

    /// Count of text runs.
    int count_texts() const;
    /// The `index`-th decoded text run; null past the end.
    const char* get_text(int index = 0) const;
    /// Count of clear sections.
    int count_clears() const;
    /// The `index`-th clear section; fields are null past the end.
    XmlClear get_clear(int index) const;

    /// Count of attributes.
    int count_attributes() const;
    /// Name of the `index`-th attribute; null past the end.
    const char* get_attribute_name(int index) const;
    /// Its decoded value; null past the end, and for a bare word.
    const char* get_attribute_value(int index) const;

    /// Children, texts and clears together, in document order.
    int count_contents() const;
    /// The content at a position of the document order; NONE past the end.
    XmlContent get_content(int index) const;

    /// Adds a child at `position` of the document order (-1: at the end). `name` is copied and not checked.
    /// The empty node on failure.
    XmlNode add_child(const char* name, bool is_declaration = false, int position = -1);
    /// Adds copies of `name` and `value` and returns them; null fields when `name` is null.
    XmlAttribute add_attribute(const char* name, const char* value);
    /// Adds a copy of `text` at `position` of the document order (-1: at the end) and returns it; null when
    /// `text` is null.
    const char* add_text(const char* text, int position = -1);

    /// The subtree as text, indented from depth `format`, or without any layout when it is -1.
    std::string create_string(int format = -1) const;
    /// Writes the same text, without a terminator, to `buffer` if it is not null. Returns its length.
    std::size_t create_string(char* buffer, int format) const;
    /// Replaces the file at `path` as a whole or not at all. Returns NONE, CANNOT_OPEN_FOR_WRITING or
    /// CANNOT_WRITE; for the errors `errno` is the system's reason, or 0 without one. The empty node writes
    /// nothing and returns NONE. `encoding_name` ("ISO-8859-1" when null) is declared when the current
    /// encoding is neither UTF-8 nor Shift-JIS; `format`: with layout.
    XmlError write_to_file(const char* path, const char* encoding_name = nullptr, bool format = true) const;

private:
    explicit XmlNode(xml::NodeRecord* counted) noexcept;
    static XmlNode empty_node();

    xml::NodeRecord* record = nullptr;
};
