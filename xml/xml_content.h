#pragma once

/// Name and value of an attribute; both live as long as the tree.
struct XmlAttribute {
    const char* name = nullptr;  ///< Null for an attribute that does not exist.
    const char* value = nullptr; ///< Null for a bare word of a processing instruction.
};

/// A section whose content is kept verbatim: comment, CDATA, document type or `<PRE>`. All fields are null
/// for one that does not exist; they live as long as the tree.
struct XmlClear {
    const char* value = nullptr;     ///< Text between the tags.
    const char* open_tag = nullptr;  ///< "<!--"
    const char* close_tag = nullptr; ///< "-->"
};

/// Kinds of content of a node.
enum class XmlContentKind { CHILD, TEXT, CLEAR, NONE };

/// One entry of a node's content in document order: the `index`-th of its children, texts or clears.
struct XmlContent {
    XmlContentKind kind = XmlContentKind::NONE; ///< NONE past the end.
    int index = 0;                              ///< Position among the contents of its kind.
};
