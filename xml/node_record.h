#pragma once

#include <cstdint>
#include <cstring>

#include "xml/document.h"
#include "xml/xml_node.h"

namespace xml {

/// The shared record behind a handle. It lies in its document's blocks, and so do its arrays.
///
/// An array that holds n entries has room for n rounded up to a power of two, so that adding is linear over
/// all. `order` is null while all content is of one kind and in insertion order; otherwise it holds, in
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

    std::int32_t content_count() const { return child_count + text_count + clear_count; }
    XmlContent content(std::int32_t position) const;
};

constexpr std::int32_t MAX_CONTENTS = 0x3FFFFFFF;

inline std::uint32_t order_entry(XmlContentKind kind, std::int32_t index) {
    return static_cast<std::uint32_t>(index) * 4 + static_cast<std::uint32_t>(kind);
}

/// The room of an array that holds `count` entries.
inline std::size_t array_room(std::size_t count) {
    std::size_t room = count > 0 ? 1 : 0;
    while (room < count)
        room *= 2;
    return room;
}

/// Makes room for one entry more in an array kept as told above. False when memory is short.
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

/// A record without content. `name` must lie in the document or be null. Null when memory is short.
NodeRecord* create_record(Document& document, const char* name, bool is_declaration);

/// Enters the entry about to be appended as number `index` of its `kind` at `position` of the document order
/// (-1: the end). False, and nothing changed, when memory is short.
bool enter_order(NodeRecord& record, XmlContentKind kind, std::int32_t index, std::int32_t position);

/// Compares two names ignoring ASCII case; a null name equals nothing.
bool names_equal(const char* left, const char* right);

} // namespace xml
