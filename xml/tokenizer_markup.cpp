#include <algorithm>
#include <cstring>

#include "xml/tokenizer.h"

namespace xml {

namespace {

// The character that a document type lacks that was cut at its first '>': the quote of a literal, the ']' of
// its subset, or the zero byte when it is whole.
char find_lacking(const char* document_type) {
    char quote = '\0';
    bool has_open_subset = false;
    for (const char* at = document_type; *at != '\0'; ++at) {
        if (*at == quote)
            quote = '\0';
        else if (quote == '\0' && is_quote(*at))
            quote = *at;
        else if (quote == '\0' && (*at == '[' || *at == ']'))
            has_open_subset = *at == '[';
    }
    return has_open_subset ? ']' : quote;
}

} // namespace

// What begins with the '<' at the cursor.
bool Tokenizer::read_markup() {
    const char next = cursor[1];
    if (next == '/')
        return read_end_tag();
    if (next == '?')
        return read_instruction();
    if (next == '!' || next == 'P') {
        if (const ClearTag* tag = find_clear_tag(cursor))
            return read_clear(*tag);
        if (next == '!')
            return fail(XmlError::UNEXPECTED_TOKEN, cursor);
    }
    return read_start_tag();
}

bool Tokenizer::read_start_tag() {
    char* const name = cursor + 1;
    char* const name_end = const_cast<char*>(characters.name_end(name, text_end));
    if (name_end == name)
        return fail(XmlError::MISSING_START_TAG_NAME, name);
    if (open_elements == 0 && element_seen)
        return fail(XmlError::UNEXPECTED_TOKEN, cursor);
    open_node(name, static_cast<std::size_t>(name_end - name), false);
    if (open_elements == 1 && stray_text != nullptr)
        return fail(XmlError::UNEXPECTED_TOKEN, stray_text);
    if (*name_end == '>') {
        terminate(name_end);
        cursor = name_end + 1;
        return true;
    }
    char* at = name_end;
    return read_attributes(at) && finish_start_tag(at);
}

// Reads up to the '>' or '/' that `at` is then left on. `at` comes in at the end of the element's name, which
// is terminated here.
bool Tokenizer::read_attributes(char*& at) {
    attributes.clear();
    attribute_names.clear();
    char* const name_end = at;
    for (;;) {
        char* const next = const_cast<char*>(characters.skip_blanks(at));
        const char c = *next;
        const bool separated = next != at;
        if (at == name_end && separated)
            terminate(name_end);
        at = next;
        if (c == '>' || c == '/')
            return check_attribute_names();
        if (!separated || !characters.is(c, NAME_START | HIGH))
            return fail(XmlError::UNEXPECTED_TOKEN, at);
        if (!read_attribute(at))
            return false;
    }
}

// Name, equals sign and quoted value; `at` moves behind the closing quote.
bool Tokenizer::read_attribute(char*& at) {
    char* const name = at;
    char* const name_end = const_cast<char*>(characters.name_end(name, text_end));
    at = const_cast<char*>(characters.skip_blanks(name_end));
    if (name_end == name || *at != '=')
        return fail(XmlError::UNEXPECTED_TOKEN, at);
    at = const_cast<char*>(characters.skip_blanks(at + 1));
    const char quote = *at;
    if (!is_quote(quote))
        return fail(XmlError::UNEXPECTED_TOKEN, at);
    char* const value = ++at;
    const char* first_undecoded = nullptr;
    if (!scan_value(at, quote, first_undecoded))
        return false;
    const char* stored = value;
    if (first_undecoded != nullptr)
        stored = require(decode(document, value, at, {characters, true}));
    terminate(name_end);
    terminate(at++);
    attributes.push_back({name, stored});
    attribute_names.push_back(view(name, name_end));
    return true;
}

bool Tokenizer::scan_value(char*& at, char quote, const char*& first_undecoded) {
    for (;;) {
        while (!characters.is(*at, VALUE_STOP))
            ++at;
        if (*at == quote)
            return true;
        std::size_t length = 1;
        if (*at == '&') {
            const Reference reference = read_reference(at);
            if (reference.error != XmlError::NONE)
                return fail(reference.error, at);
            length = reference.length;
        } else if (characters.is(*at, HIGH)) {
            length = whole_length(at, quote);
        } else if (!is_quote(*at) && !characters.is(*at, BLANK)) {
            return fail(XmlError::UNEXPECTED_TOKEN, at);
        }
        if (first_undecoded == nullptr && (*at == '&' || characters.is(*at, BLANK)))
            first_undecoded = at;
        at += length;
    }
}

bool Tokenizer::check_attribute_names() {
    const std::size_t repeated = duplicates.find(attribute_names);
    return repeated == NO_DUPLICATE || fail(XmlError::UNEXPECTED_TOKEN, attribute_names[repeated].data());
}

// At the '>' or '/' of a start tag whose name may still end there.
bool Tokenizer::finish_start_tag(char* at) {
    NodeRecord& node = *open_nodes.back().node;
    const bool is_empty_element = *at == '/';
    if (is_empty_element && at[1] != '>')
        return fail(XmlError::UNEXPECTED_TOKEN, at + 1);
    terminate(const_cast<char*>(node.name) + open_nodes.back().name_length);
    attach_attributes(node);
    if (is_empty_element)
        close_last();
    cursor = at + (is_empty_element ? 2 : 1);
    return true;
}

void Tokenizer::attach_attributes(NodeRecord& node) {
    const std::size_t count = attributes.size();
    if (count == 0)
        return;
    node.attributes = require(document.allocate_array<XmlAttribute>(array_room(count)));
    std::memcpy(static_cast<void*>(node.attributes), attributes.data(), count * sizeof(XmlAttribute));
    node.attribute_count = static_cast<std::int32_t>(count);
}

bool Tokenizer::read_end_tag() {
    char* const name = cursor + 2;
    const char* const name_end = characters.name_end(name, text_end);
    if (name_end == name)
        return fail(XmlError::MISSING_END_TAG_NAME, name);
    const char* const at = characters.skip_blanks(name_end);
    if (*at != '>')
        return fail(XmlError::UNEXPECTED_TOKEN, at);
    if (!close_to(view(name, name_end), cursor))
        return false;
    cursor += at + 1 - cursor;
    return true;
}

// Closes the innermost open element called `name` and all that is open within it. Declarations within are
// closed silently, as they have no end tag; an element causes the warning.
bool Tokenizer::close_to(std::string_view name, const char* place) {
    std::size_t depth = open_nodes.size();
    std::size_t unclosed_elements = 0;
    for (;;) {
        if (--depth == 0)
            return fail(XmlError::UNMATCHED_END_TAG, place);
        const OpenNode& open = open_nodes[depth];
        if (open.node->is_declaration)
            continue;
        if (open.name_length == name.size() && std::memcmp(open.node->name, name.data(), name.size()) == 0)
            break;
        ++unclosed_elements;
    }
    if (unclosed_elements > 0 && error == XmlError::NONE)
        fail(XmlError::UNMATCHED_END_TAG_WARNING, place);
    while (open_nodes.size() > depth)
        close_last();
    return true;
}

bool Tokenizer::read_clear(const ClearTag& tag) {
    const auto index = static_cast<ClearTagIndex>(&tag - CLEAR_TAGS.data());
    if (!accept_clear_here(index))
        return fail(XmlError::UNEXPECTED_TOKEN, cursor);
    char* const value = cursor + tag.open_length;
    char* at = value;
    if (!scan_verbatim(at, {tag.close, tag.close_length}))
        return false;
    terminate(at);
    contents.push_back({value, XmlContentKind::CLEAR, index});
    if (index == DOCUMENT_TYPE) {
        document_type_seen = true;
        type_lacks = find_lacking(value);
    } else if (index == PREFORMATTED) {
        element_seen = true;
    }
    cursor = at + tag.close_length;
    return true;
}

// A document type stands once, before the document element; CDATA within it; <PRE> where an element may.
bool Tokenizer::accept_clear_here(ClearTagIndex tag) const {
    switch (tag) {
    case DOCUMENT_TYPE:
        return open_elements == 0 && !element_seen && !document_type_seen;
    case CDATA:
        return open_elements > 0;
    case PREFORMATTED:
        return open_elements > 0 || !element_seen;
    default:
        return true;
    }
}

// Moves `at` to the first `close`. Only the bytes of whole characters are stepped over
// together: the second byte of one can be a bracket, but a first byte that lacks its others hides no end.
bool Tokenizer::scan_verbatim(char*& at, std::string_view close) {
    for (;;) {
        while (!characters.is(*at, CLEAR_STOP))
            ++at;
        if (at == text_end)
            return fail(XmlError::UNMATCHED_CLEAR_TAG_END, cursor);
        if (*at == close[0] && std::strncmp(at, close.data(), close.size()) == 0)
            return true;
        at += std::max<std::size_t>(characters.character_length(at, text_end), 1);
    }
}

} // namespace xml
