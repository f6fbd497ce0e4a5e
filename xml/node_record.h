#pragma once

#include <cstdint>
#include <cstring>

#include "xml/document.h"
#include "xml/xml_content.h"

namespace xml {

/// The shared record behind a handle. It is in its document's blocks, as are its arrays and strings.
///
/// An array with n entries has room for n rounded up to a power of two, so that adding n entries takes linear
/// time. `order` is null while all content is of one kind and in insertion order; otherwise it contains, in
/// document order, index * 4 + kind of every entry.
struct NodeRecord {
    Document* document;
    const char* name;
    NodeRecord** children;
    const char** texts;
    XmlClear* clears;
    XmlAttribute* attributes;
    std::uint32_t* order;
    std::int32_t child_count;
    std::int32_t text_count;
    std::int32_t clear_count;
    std::int32_t attribute_count;
    bool is_declaration;
    std::int32_t line; ///< Of its start tag, from 1; 0 when it was not parsed.

    /// Count of children, texts and clear sections together.
    std::int32_t content_count() const { return child_count + text_count + clear_count; }
    /// The content at a position of the document order, which must be below the count.
    XmlContent content(std::int32_t position) const;
};

/// Most contents of a node: an index and a kind must fit into an entry of `order`.
constexpr std::int32_t MAX_CONTENTS = 0x3FFFFFFF;

/// An entry of `order`.
inline std::uint32_t order_entry(XmlContentKind kind, std::int32_t index) {
    return static_cast<std::uint32_t>(index) * 4 + static_cast<std::uint32_t>(kind);
}

/// The room of an array with `count` entries.
inline std::size_t array_room(std::size_t count) {
    std::size_t room = count > 0 ? 1 : 0;
    while (room < count)
        room *= 2;
    return room;
}

/// Makes room for one more entry in an array with that growth rule. False when memory is short.
template <class T>
bool reserve_one(Document& document, T*& array, std::int32_t count) {
    const auto used = static_cast<std::size_t>(count);
    if (array_room(used) > used)
        return true;
    T* grown = document.allocate_array<T>(array_room(used + 1));
    if (grown == nullptr)
        return false;
    if (used > 0)
        std::memcpy(static_cast<void*>(grown), array, used * sizeof(T));
    array = grown;
    return true;
}

/// A record without content. `name` must be in the document's storage or null. Null when memory is short.
NodeRecord* create_record(Document& document, const char* name, bool is_declaration);

/// Enters the entry about to be appended as number `index` of its `kind` at `position` of the document order
/// (-1: the end). False, without a change, when memory is short.
bool enter_order(NodeRecord& record, XmlContentKind kind, std::int32_t index, std::int32_t position);

/// Compares two names ignoring ASCII case; false if either is null.
bool names_equal(const char* left, const char* right);

} // namespace xml
