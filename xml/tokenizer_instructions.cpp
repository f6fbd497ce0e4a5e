#include <cstring>

#include "xml/declaration_grammar.h"
#include "xml/tokenizer.h"

// Processing instructions and the XML declaration.
namespace xml {

namespace {

constexpr std::string_view INSTRUCTION_END = "?>";

bool is_reserved_target(std::string_view target) {
    return target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
           (target[2] | 0x20) == 'l';
}

} // namespace

// Moves `at` to the end of a processing instruction. Its content becomes names and values, in which control
// characters are errors.
bool Tokenizer::scan_instruction(char*& at) {
    for (;; ++at) {
        while (!characters.is(*at, CLEAR_STOP))
            ++at;
        if (at == text_end)
            return fail(XmlError::UNEXPECTED_TOKEN, cursor);
        if (std::strncmp(at, INSTRUCTION_END.data(), INSTRUCTION_END.size()) == 0)
            return true;
        if (!characters.is(*at, HIGH) && characters.character_length(at, text_end) == 0)
            return fail(XmlError::UNEXPECTED_TOKEN, at);
    }
}

// A processing instruction opens a node that takes what follows, up to the end tag of its parent.
bool Tokenizer::read_instruction() {
    char* const target = cursor + 2;
    char* const target_end = const_cast<char*>(characters.name_end(target, text_end));
    if (target_end == target)
        return fail(XmlError::MISSING_START_TAG_NAME, target);
    open_node(target, static_cast<std::size_t>(target_end - target), true);
    char* end = target_end;
    if (!scan_instruction(end))
        return false;
    const bool has_content = target_end != end;
    if (has_content && !characters.is(*target_end, BLANK))
        return fail(XmlError::UNEXPECTED_TOKEN, target_end);
    if (is_reserved_target(view(target, target_end)) && !check_declaration_here(target_end, end))
        return false;
    terminate(target_end);
    terminate(end);
    attributes.clear();
    if (has_content)
        read_pseudo_attributes(target_end + 1, end);
    attach_attributes(*open_nodes.back().node);
    cursor = end + INSTRUCTION_END.size();
    return true;
}

// The name "xml" in any case is reserved for the declaration, which must be at the very start, in lower case.
bool Tokenizer::check_declaration_here(const char* content, const char* end) {
    if (cursor != text || std::strncmp(text, "<?xml", 5) != 0)
        return fail(XmlError::UNEXPECTED_TOKEN, cursor);
    const DeclarationCheck check = check_declaration(view(content, end));
    if (check.error != nullptr)
        return fail(XmlError::UNEXPECTED_TOKEN, check.error);
    return true;
}

// The content of an instruction between `at` and its zero-terminated `end`: name="value" pairs first, then
// words between blanks, which have no value. So a quote in the words cannot pair with one of a value when
// values are written again with other quotes.
void Tokenizer::read_pseudo_attributes(char* at, char* end) {
    bool only_words = false;
    for (;;) {
        char* const name = const_cast<char*>(characters.skip_blanks(at));
        if (name == end)
            return;
        char* name_end = only_words ? name : const_cast<char*>(characters.name_end(name, end));
        char* value = nullptr;
        char* value_end = name_end != name ? find_pseudo_value(name_end, end, value) : nullptr;
        if (value == nullptr) {
            only_words = true;
            while (name_end != end && !characters.is(*name_end, BLANK))
                ++name_end;
            value_end = name_end;
        }
        add_pseudo_attribute(name, name_end, value, value_end);
        if (value_end == end)
            return;
        at = value_end + 1;
    }
}

// The closing quote of the value behind a name, whose begin goes to `value`; null without such a value.
char* Tokenizer::find_pseudo_value(char* name_end, char* end, char*& value) const {
    const char* const equals = characters.skip_blanks(name_end);
    if (*equals != '=')
        return nullptr;
    char* const quote = const_cast<char*>(characters.skip_blanks(equals + 1));
    if (!is_quote(*quote))
        return nullptr;
    void* const close = std::memchr(quote + 1, *quote, static_cast<std::size_t>(end - quote - 1));
    if (close != nullptr)
        value = quote + 1;
    return static_cast<char*>(close);
}

// References are not defined in instructions, so an invalid one is not an error here.
void Tokenizer::add_pseudo_attribute(char* name, char* name_end, char* value, char* value_end) {
    terminate(name_end);
    const char* stored = value;
    if (value != nullptr) {
        stored = require(decode(document, value, value_end, {characters, true}));
        terminate(value_end);
    }
    attributes.push_back({name, stored});
}

} // namespace xml
