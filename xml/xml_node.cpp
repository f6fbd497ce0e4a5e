#include "xml/xml_node.h"

#include <cstring>
#include <utility>

#include "xml/node_record.h"

namespace {

using xml::NodeRecord;

// Counted once for itself, so that its handles never bring it to zero.
xml::Document empty_document;
NodeRecord empty_record = {&empty_document, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0, 0, 0,
                           false,           0};

bool is_in_range(int index, std::int32_t count) {
    return index >= 0 && index < count;
}

const char* copy_name(xml::Document& document, const char* name) {
    return name != nullptr ? document.copy_string(name, std::strlen(name)) : nullptr;
}

} // namespace

XmlNode::XmlNode(NodeRecord* counted) noexcept : record(counted) {}

XmlNode::XmlNode(const XmlNode& other) noexcept : record(other.record) {
    if (record != nullptr)
        record->document->retain();
}

XmlNode::XmlNode(XmlNode&& other) noexcept : record(std::exchange(other.record, nullptr)) {}

XmlNode& XmlNode::operator=(XmlNode other) noexcept {
    std::swap(record, other.record);
    return *this;
}

XmlNode::~XmlNode() {
    if (record != nullptr)
        record->document->release();
}

XmlNode XmlNode::empty_node() {
    empty_document.retain();
    return XmlNode(&empty_record);
}

XmlNode XmlNode::create_top_node(const char* name, bool is_declaration) {
    xml::Document* document = xml::Document::create(0);
    if (document == nullptr)
        return empty_node();
    const char* copy = copy_name(*document, name);
    NodeRecord* top =
        name == nullptr || copy != nullptr ? create_record(*document, copy, is_declaration) : nullptr;
    if (top != nullptr)
        return XmlNode(top);
    document->release();
    return empty_node();
}

const char* XmlNode::get_name() const {
    return record != nullptr ? record->name : nullptr;
}

bool XmlNode::is_empty() const {
    return record == nullptr || record == &empty_record;
}

bool XmlNode::is_declaration() const {
    return record != nullptr && record->is_declaration;
}

int XmlNode::get_line() const {
    return record != nullptr ? record->line : 0;
}

int XmlNode::count_children() const {
    return record != nullptr ? record->child_count : 0;
}

int XmlNode::count_children(const char* name) const {
    int count = 0;
    for (int i = 0; i < count_children(); ++i)
        count += xml::names_equal(record->children[i]->name, name) ? 1 : 0;
    return count;
}

XmlNode XmlNode::get_child(int index) const {
    if (!is_in_range(index, count_children()))
        return empty_node();
    record->document->retain();
    return XmlNode(record->children[index]);
}

XmlNode XmlNode::get_child(const char* name, int* index) const {
    for (int i = index != nullptr && *index > 0 ? *index : 0; i < count_children(); ++i) {
        if (!xml::names_equal(record->children[i]->name, name))
            continue;
        if (index != nullptr)
            *index = i + 1;
        return get_child(i);
    }
    return empty_node();
}

int XmlNode::count_texts() const {
    return record != nullptr ? record->text_count : 0;
}

const char* XmlNode::get_text(int index) const {
    return is_in_range(index, count_texts()) ? record->texts[index] : nullptr;
}

int XmlNode::count_clears() const {
    return record != nullptr ? record->clear_count : 0;
}

XmlClear XmlNode::get_clear(int index) const {
    return is_in_range(index, count_clears()) ? record->clears[index] : XmlClear{};
}

int XmlNode::count_attributes() const {
    return record != nullptr ? record->attribute_count : 0;
}

const char* XmlNode::get_attribute_name(int index) const {
    return is_in_range(index, count_attributes()) ? record->attributes[index].name : nullptr;
}

const char* XmlNode::get_attribute_value(int index) const {
    return is_in_range(index, count_attributes()) ? record->attributes[index].value : nullptr;
}

int XmlNode::count_contents() const {
    return record != nullptr ? record->content_count() : 0;
}

XmlContent XmlNode::get_content(int index) const {
    return record != nullptr ? record->content(index) : XmlContent{};
}

XmlNode XmlNode::add_child(const char* name, bool is_declaration, int position) {
    if (is_empty())
        return empty_node();
    xml::Document& document = *record->document;
    const char* copy = copy_name(document, name);
    NodeRecord* child =
        name == nullptr || copy != nullptr ? create_record(document, copy, is_declaration) : nullptr;
    if (child == nullptr || !reserve_one(document, record->children, record->child_count) ||
        !enter_order(*record, XmlContentKind::CHILD, record->child_count, position))
        return empty_node();
    record->children[record->child_count++] = child;
    document.retain();
    return XmlNode(child);
}

XmlAttribute XmlNode::add_attribute(const char* name, const char* value) {
    if (is_empty() || name == nullptr)
        return {};
    xml::Document& document = *record->document;
    const XmlAttribute pair = {copy_name(document, name), copy_name(document, value)};
    const bool copied = pair.name != nullptr && (value == nullptr || pair.value != nullptr);
    if (!copied || record->attribute_count >= xml::MAX_CONTENTS ||
        !reserve_one(document, record->attributes, record->attribute_count))
        return {};
    record->attributes[record->attribute_count++] = pair;
    return pair;
}

const char* XmlNode::add_text(const char* text, int position) {
    if (is_empty() || text == nullptr)
        return nullptr;
    xml::Document& document = *record->document;
    const char* copy = copy_name(document, text);
    if (copy == nullptr || !reserve_one(document, record->texts, record->text_count) ||
        !enter_order(*record, XmlContentKind::TEXT, record->text_count, position))
        return nullptr;
    record->texts[record->text_count++] = copy;
    return copy;
}
