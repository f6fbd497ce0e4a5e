#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "xml/file_input.h"
#include "xml/node_record.h"
#include "xml/printed_report.h"
#include "xml/text_position.h"
#include "xml/tokenizer.h"
#include "xml/utf16.h"
#include "xml/xml_encoding.h"
#include "xml/xml_node.h"
#include "xml/xml_settings.h"

namespace xml {

namespace {

/// Bytes that parse_file_or_report guesses from.
constexpr std::size_t GUESS_WINDOW = 200;
/// More of them make a better guess.
constexpr std::size_t WIDE_GUESS_WINDOW = 4096;
constexpr std::size_t UTF_8_MARK_LENGTH = 3;

bool has_utf8_mark(const char* text) {
    return std::strncmp(text, "\xEF\xBB\xBF", UTF_8_MARK_LENGTH) == 0;
}

bool fail(XmlResults& results, XmlError error) {
    results = {error, 0, 0};
    return false;
}

NodeRecord* find_child(const NodeRecord& parent, const char* name) {
    NodeRecord** const end = parent.children + parent.child_count;
    NodeRecord** const found = std::find_if(
        parent.children, end, [name](NodeRecord* child) { return names_equal(child->name, name); });
    return found != end ? *found : nullptr;
}

bool is_only_child(const NodeRecord& root) {
    return root.content_count() == 1 && root.child_count == 1 && root.attribute_count == 0;
}

// The node of a read root that the caller asked for, and the code that goes with it.
NodeRecord* choose_node(NodeRecord& root, const char* first_tag, XmlResults& results) {
    if (root.child_count == 0)
        results.error = XmlError::NO_TAG_FOUND_WARNING;
    if (results.error > XmlError::NO_TAG_FOUND_WARNING)
        return nullptr;
    NodeRecord* node = is_only_child(root) ? root.children[0] : &root;
    if (first_tag == nullptr || *first_tag == '\0' || names_equal(node->name, first_tag))
        return node;
    node = find_child(*node, first_tag);
    if (node == nullptr)
        fail(results, XmlError::FIRST_TAG_NOT_FOUND);
    return node;
}

NodeRecord* read_tree(Document& document, char* text, std::size_t length, const char* first_tag,
                      XmlResults& results) {
    const XmlSettings& settings = get_xml_settings();
    NodeRecord* root = require(create_record(document, nullptr, false));
    Tokenizer tokenizer(document, text, length, settings);
    tokenizer.read_into(*root);
    results = {tokenizer.get_error(), 0, 0};
    NodeRecord* node = choose_node(*root, first_tag, results);
    if (results.error != XmlError::NONE && results.error != XmlError::FIRST_TAG_NOT_FOUND)
        find_position(text, tokenizer.get_error_offset(), get_length_table(settings.encoding),
                      tokenizer.get_lost_line_feeds(), results);
    return node;
}

// Reads the text that begins `skipped` bytes into `owned`, which it takes over. The result, counted once, is
// null on error. A shortage of memory counts as finding no elements.
NodeRecord* parse_owned(OwnedText owned, std::size_t skipped, const char* first_tag, XmlResults& results) {
    char* text = owned.buffer + skipped;
    const std::size_t length = std::strlen(text);
    Document* document = Document::create(length);
    if (document == nullptr) {
        std::free(owned.buffer);
        fail(results, XmlError::NO_ELEMENTS_FOUND);
        return nullptr;
    }
    document->adopt_text(owned.buffer);
    NodeRecord* node = nullptr;
    try {
        node = read_tree(*document, text, length, first_tag, results);
    } catch (const std::bad_alloc&) {
        fail(results, XmlError::NO_ELEMENTS_FOUND);
    }
    if (node == nullptr)
        document->release();
    return node;
}

bool copy_text(const char* text, OwnedText& copy) {
    const std::size_t length = text != nullptr ? std::strlen(text) : MAX_TEXT + 1;
    if (length > MAX_TEXT)
        return false;
    copy.length = length;
    copy.buffer = static_cast<char*>(std::malloc(length + 1));
    if (copy.buffer != nullptr)
        std::memcpy(copy.buffer, text, length + 1);
    return copy.buffer != nullptr;
}

// Replaces UTF-16 by the current encoding's bytes.
bool convert_wide_file(OwnedText& file, const Utf16Signature& signature) {
    const bool to_utf8 = get_xml_settings().encoding == XmlEncoding::UTF_8;
    const std::string charset = to_utf8 ? "UTF-8" : get_system_charset();
    OwnedText converted;
    const bool done = convert_utf16(file.buffer + signature.mark_length, file.length - signature.mark_length,
                                    signature.is_big_endian, charset.c_str(), converted);
    std::free(file.buffer);
    file = converted;
    return done && converted.length <= MAX_TEXT;
}

NodeRecord* parse_loaded_file(OwnedText file, const char* first_tag, XmlResults& results) {
    const bool guessing = get_xml_settings().guess_wide_characters;
    const Utf16Signature wide = find_utf16(file.buffer, file.length);
    if (file.length == 0) {
        std::free(file.buffer);
        fail(results, XmlError::NO_DATA);
        return nullptr;
    }
    if (guessing && wide.is_utf16) {
        if (convert_wide_file(file, wide))
            return parse_owned(file, 0, first_tag, results);
        std::free(file.buffer);
        fail(results, XmlError::CONVERSION_FAILED);
        return nullptr;
    }
    std::size_t skipped = has_utf8_mark(file.buffer) ? UTF_8_MARK_LENGTH : 0;
    if (!guessing && wide.is_utf16 && !wide.is_big_endian)
        skipped = wide.mark_length;
    return parse_owned(file, skipped, first_tag, results);
}

void select_guessed_encoding(const OwnedText& file, std::size_t window) {
    XmlSettings settings = get_xml_settings();
    settings.encoding = guess_encoding(file.buffer, std::min(file.length, window), true);
    set_xml_settings(settings);
}

} // namespace

} // namespace xml

XmlNode XmlNode::parse_string(const char* text, const char* first_tag, XmlResults* results) {
    XmlResults found;
    xml::OwnedText copy;
    xml::NodeRecord* node = nullptr;
    if (xml::copy_text(text, copy))
        node =
            xml::parse_owned(copy, xml::has_utf8_mark(text) ? xml::UTF_8_MARK_LENGTH : 0, first_tag, found);
    else
        xml::fail(found, XmlError::NO_ELEMENTS_FOUND);
    if (results != nullptr)
        *results = found;
    return node != nullptr ? XmlNode(node) : empty_node();
}

XmlNode XmlNode::parse_file(const char* path, const char* first_tag, XmlResults* results) {
    XmlResults found;
    xml::OwnedText file;
    xml::NodeRecord* node = nullptr;
    if (xml::read_file(path, file))
        node = xml::parse_loaded_file(file, first_tag, found);
    else
        xml::fail(found, XmlError::FILE_NOT_FOUND);
    if (results != nullptr)
        *results = found;
    return node != nullptr ? XmlNode(node) : empty_node();
}

XmlNode XmlNode::parse_file_as_guessed(const char* path, const char* first_tag, XmlResults* results) {
    const XmlSettings before = get_xml_settings();
    XmlResults found;
    xml::OwnedText file;
    xml::NodeRecord* node = nullptr;
    if (xml::read_file(path, file)) {
        xml::select_guessed_encoding(file, xml::WIDE_GUESS_WINDOW);
        node = xml::parse_loaded_file(file, first_tag, found);
        set_xml_settings(before);
    } else {
        xml::fail(found, XmlError::FILE_NOT_FOUND);
    }
    if (results != nullptr)
        *results = found;
    return node != nullptr ? XmlNode(node) : empty_node();
}

XmlNode XmlNode::parse_file_or_report(const char* path, const char* first_tag, XmlResults* results) {
    XmlResults found;
    xml::OwnedText file;
    xml::NodeRecord* node = nullptr;
    if (xml::read_file(path, file)) {
        xml::select_guessed_encoding(file, xml::GUESS_WINDOW);
        node = xml::parse_loaded_file(file, first_tag, found);
    } else {
        xml::fail(found, XmlError::FILE_NOT_FOUND);
    }
    XmlNode top = node != nullptr ? XmlNode(node) : empty_node();
    if (results != nullptr)
        *results = found;
    if (found.error == XmlError::NONE)
        return top;
    xml::print_report(path, first_tag, found);
    return empty_node();
}
