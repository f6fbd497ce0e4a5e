#include "xml/node_record.h"

namespace xml {

namespace {

char fold_case(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

XmlContentKind only_kind(const NodeRecord& record) {
    if (record.child_count > 0)
        return XmlContentKind::CHILD;
    return record.text_count > 0 ? XmlContentKind::TEXT : XmlContentKind::CLEAR;
}

// Creates the order that a null `order` implies, with room for one more entry.
bool spell_out_order(NodeRecord& record) {
    const std::int32_t count = record.content_count();
    auto* order =
        record.document->allocate_array<std::uint32_t>(array_room(static_cast<std::size_t>(count) + 1));
    if (order == nullptr)
        return false;
    for (std::int32_t i = 0; i < count; ++i)
        order[i] = order_entry(only_kind(record), i);
    record.order = order;
    return true;
}

} // namespace

XmlContent NodeRecord::content(std::int32_t position) const {
    if (position < 0 || position >= content_count())
        return {};
    if (order == nullptr)
        return {only_kind(*this), position};
    return {static_cast<XmlContentKind>(order[position] & 3), static_cast<int>(order[position] >> 2)};
}

NodeRecord* create_record(Document& document, const char* name, bool is_declaration) {
    auto* record = document.allocate_array<NodeRecord>(1);
    if (record != nullptr)
        *record = NodeRecord{&document, name, nullptr, nullptr, nullptr,        nullptr, nullptr,
                             0,         0,    0,       0,       is_declaration, 0};
    return record;
}

bool enter_order(NodeRecord& record, XmlContentKind kind, std::int32_t index, std::int32_t position) {
    const std::int32_t count = record.content_count();
    if (count >= MAX_CONTENTS)
        return false;
    const bool at_end = position < 0 || position >= count;
    if (record.order == nullptr) {
        if (at_end && (count == 0 || only_kind(record) == kind))
            return true;
        if (!spell_out_order(record))
            return false;
    }
    if (!reserve_one(*record.document, record.order, count))
        return false;
    std::uint32_t* place = record.order + (at_end ? count : position);
    std::memmove(place + 1, place, static_cast<std::size_t>(record.order + count - place) * sizeof(*place));
    *place = order_entry(kind, index);
    return true;
}

bool names_equal(const char* left, const char* right) {
    if (left == nullptr || right == nullptr)
        return false;
    while (*left != '\0' && fold_case(*left) == fold_case(*right)) {
        ++left;
        ++right;
    }
    return *left == *right;
}

} // namespace xml
