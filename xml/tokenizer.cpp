#include "xml/tokenizer.h"

#include <algorithm>
#include <cstring>

namespace xml {

Tokenizer::Tokenizer(Document& owner, char* owned_text, std::size_t length, const XmlSettings& current)
    : document(owner), characters(CharacterTable::of(current.encoding)), settings(current), text(owned_text),
      text_end(owned_text + length), cursor(owned_text), error_place(text_end), line_place(owned_text) {}

void Tokenizer::read_into(NodeRecord& root) {
    open_nodes.push_back({&root, 0, 0});
    bool going = true;
    while (going && cursor != text_end) {
        // The '<' of a markup behind text may be overwritten already, by the terminator of that text.
        going = *cursor == '<' || read_text();
        if (going && cursor != text_end)
            going = read_markup();
    }
    if (going && open_elements > 0 && error == XmlError::NONE)
        fail(XmlError::UNMATCHED_END_TAG_WARNING, text_end);
    while (!open_nodes.empty())
        close_last();
    if (error == XmlError::NONE && !element_seen && stray_text != nullptr && root.child_count > 0)
        fail(XmlError::UNEXPECTED_TOKEN, stray_text);
}

// A run of text up to the next '<' or the end.
bool Tokenizer::read_text() {
    char* const run = cursor;
    char* const visible = const_cast<char*>(characters.skip_blanks(run));
    char* at = visible;
    const char* first_undecoded = nullptr;
    if (!scan_text(at, first_undecoded))
        return false;
    cursor = at;
    const bool only_blanks = visible == at;
    if (only_blanks && settings.drop_white_space)
        return true;
    char* begin = run;
    char* end = at;
    if (settings.drop_white_space) {
        begin = visible;
        while (characters.is(end[-1], BLANK))
            --end;
    } else if (const void* carriage_return =
                   std::memchr(run, '\r', static_cast<std::size_t>(visible - run))) {
        first_undecoded = static_cast<const char*>(carriage_return);
    }
    const char* const stored = store_text(begin, end, first_undecoded);
    return only_blanks || accept_run_here(visible, stored);
}

// Moves `at` behind the run; `first_undecoded` becomes the first character that is not its own decoding.
bool Tokenizer::scan_text(char*& at, const char*& first_undecoded) {
    for (;;) {
        while (!characters.is(*at, TEXT_STOP))
            ++at;
        std::size_t length = 1;
        if (*at == '<' || at == text_end)
            return true;
        if (*at == '&') {
            const Reference reference = read_reference(at);
            if (reference.error != XmlError::NONE)
                return fail(reference.error, at);
            length = reference.length;
        } else if (*at == ']') {
            if (at[1] == ']' && at[2] == '>')
                return fail(XmlError::UNMATCHED_CLEAR_TAG_END, at);
        } else if (characters.is(*at, HIGH)) {
            length = whole_length(at, '<');
        } else if (*at != '\r') {
            return fail(XmlError::UNEXPECTED_TOKEN, at);
        }
        if (first_undecoded == nullptr && (*at == '&' || *at == '\r'))
            first_undecoded = at;
        at += length;
    }
}

// The bytes that the length table counts to the character at `at`, up to where the markup goes on: a first
// byte that lacks its others must not hide a tag or the end of a value.
std::size_t Tokenizer::whole_length(const char* at, char quote) const {
    const std::size_t length = characters.table_length(*at);
    std::size_t whole = 1;
    while (whole < length && at + whole != text_end && at[whole] != '<' && at[whole] != quote)
        ++whole;
    return whole;
}

// Text is not allowed outside the document element, except the rest of a document type that was cut. It is an
// error only once there is an element: a text without any element has a different error.
bool Tokenizer::accept_run_here(const char* run, const char* decoded) {
    if (open_elements > 0)
        return true;
    if (element_seen)
        return fail(XmlError::UNEXPECTED_TOKEN, run);
    if (type_lacks != '\0' && ends_document_type(decoded))
        type_lacks = '\0';
    else if (stray_text == nullptr)
        stray_text = run;
    return true;
}

bool Tokenizer::ends_document_type(const char* decoded) const {
    const bool in_subset = type_lacks == ']';
    const char* at = in_subset ? characters.skip_blanks(decoded) : std::strchr(decoded, type_lacks);
    if (at == nullptr || *at != type_lacks)
        return false;
    at = in_subset ? characters.skip_blanks(at + 1) : std::strchr(at, '>');
    return at != nullptr && *at == '>' && *characters.skip_blanks(at + 1) == '\0';
}

// The decoded run, before it is joined to another.
const char* Tokenizer::store_text(char* begin, char* end, const char* first_undecoded) {
    char* stored = begin;
    if (first_undecoded != nullptr && first_undecoded < end)
        stored = require(decode(document, begin, end, {characters, false}));
    else
        terminate(end);
    if (settings.join_text_around_comments && continues_text_before_comment())
        join_text(stored);
    else
        contents.push_back({stored, XmlContentKind::TEXT, CDATA});
    return stored;
}

bool Tokenizer::continues_text_before_comment() const {
    const std::size_t count = contents.size();
    if (count < open_nodes.back().first_content + 2)
        return false;
    const PendingContent& last = contents[count - 1];
    return last.kind == XmlContentKind::CLEAR && last.clear_tag == COMMENT &&
           contents[count - 2].kind == XmlContentKind::TEXT;
}

// Discards the comment and appends to the run before it. The room doubles, so that a run of many pieces takes
// linear time.
void Tokenizer::join_text(const char* addition) {
    contents.pop_back();
    PendingContent& earlier = contents.back();
    if (earlier.item != joined.text) {
        joined.text = static_cast<char*>(earlier.item);
        joined.length = std::strlen(joined.text);
        joined.room = 0;
    }
    const std::size_t added = std::strlen(addition);
    const std::size_t needed = joined.length + added + 1;
    if (needed > joined.room) {
        joined.room = 2 * needed;
        char* grown = require(document.allocate_array<char>(joined.room));
        std::memcpy(grown, joined.text, joined.length);
        joined.text = grown;
        earlier.item = grown;
    }
    std::memcpy(joined.text + joined.length, addition, added + 1);
    joined.length += added;
}

// The line of `place`, from 1. Places must be asked for in ascending order.
std::int32_t Tokenizer::count_lines(const char* place) {
    while (const void* feed = std::memchr(line_place, '\n', static_cast<std::size_t>(place - line_place))) {
        line_place = static_cast<const char*>(feed) + 1;
        ++line;
    }
    line_place = place;
    const auto offset = static_cast<std::size_t>(place - text);
    for (; counted_lost_line_feeds < lost_line_feeds.size() &&
           lost_line_feeds[counted_lost_line_feeds] < offset;
         ++counted_lost_line_feeds)
        ++line;
    return line;
}

void Tokenizer::open_node(char* name, std::size_t name_length, bool is_declaration) {
    NodeRecord* node = require(create_record(document, name, is_declaration));
    node->line = count_lines(name);
    contents.push_back({node, XmlContentKind::CHILD, CDATA});
    open_nodes.push_back({node, contents.size(), name_length});
    if (!is_declaration) {
        ++open_elements;
        element_seen = true;
    }
}

void Tokenizer::close_last() {
    const OpenNode& last = open_nodes.back();
    if (!last.node->is_declaration && last.node->name != nullptr)
        --open_elements;
    if (contents.size() > last.first_content)
        attach_contents(*last.node, last.first_content);
    contents.resize(last.first_content);
    open_nodes.pop_back();
}

void Tokenizer::attach_contents(NodeRecord& node, std::size_t first_content) {
    const PendingContent* begin = contents.data() + first_content;
    const PendingContent* end = contents.data() + contents.size();
    if (end - begin > MAX_CONTENTS)
        throw std::bad_alloc();
    std::size_t counts[3] = {0, 0, 0};
    for (const PendingContent* content = begin; content != end; ++content)
        ++counts[static_cast<std::size_t>(content->kind)];
    const auto total = static_cast<std::size_t>(end - begin);
    if (counts[0] > 0)
        node.children = require(document.allocate_array<NodeRecord*>(array_room(counts[0])));
    if (counts[1] > 0)
        node.texts = require(document.allocate_array<const char*>(array_room(counts[1])));
    if (counts[2] > 0)
        node.clears = require(document.allocate_array<XmlClear>(array_room(counts[2])));
    if (total != *std::max_element(counts, counts + 3))
        node.order = require(document.allocate_array<std::uint32_t>(array_room(total)));
    for (const PendingContent* content = begin; content != end; ++content) {
        std::int32_t index = 0;
        if (content->kind == XmlContentKind::CHILD) {
            index = node.child_count++;
            node.children[index] = static_cast<NodeRecord*>(content->item);
        } else if (content->kind == XmlContentKind::TEXT) {
            index = node.text_count++;
            node.texts[index] = static_cast<const char*>(content->item);
        } else {
            index = node.clear_count++;
            const ClearTag& tag = CLEAR_TAGS[content->clear_tag];
            node.clears[index] = {static_cast<const char*>(content->item), tag.open, tag.close};
        }
        if (node.order != nullptr)
            node.order[content - begin] = order_entry(content->kind, index);
    }
}

// Ends a string in place of the character behind it.
void Tokenizer::terminate(char* at) {
    if (*at == '\n')
        lost_line_feeds.push_back(static_cast<std::size_t>(at - text));
    *at = '\0';
}

bool Tokenizer::fail(XmlError code, const char* place) {
    error = code;
    error_place = place;
    return false;
}

} // namespace xml
