#include "xml/utf16.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <iconv.h>
#include <langinfo.h>
#include <locale.h>

namespace xml {

namespace {

// Most targets need no more than two bytes for each byte of UTF-16; a stateful one may, and grows.
constexpr std::size_t SLACK = 64;

std::string replaced_charset;

bool grow(OwnedText& text, std::size_t& room) {
    room *= 2;
    auto* buffer = static_cast<char*>(std::realloc(text.buffer, room));
    if (buffer == nullptr)
        return false;
    text.buffer = buffer;
    return true;
}

// One pass over the input and one for the closing shift sequence, which iconv asks for with a null input.
bool convert_all(iconv_t converter, const char* bytes, std::size_t length, OwnedText& text,
                 std::size_t room) {
    char* input = const_cast<char*>(bytes);
    bool flushing = false;
    for (;;) {
        char* output = text.buffer + text.length;
        std::size_t output_left = room - text.length - 1;
        const std::size_t result = flushing ? iconv(converter, nullptr, nullptr, &output, &output_left)
                                            : iconv(converter, &input, &length, &output, &output_left);
        text.length = static_cast<std::size_t>(output - text.buffer);
        if (result != static_cast<std::size_t>(-1)) {
            if (flushing)
                break;
            flushing = true;
        } else if (errno != E2BIG || !grow(text, room)) {
            return false;
        }
    }
    text.buffer[text.length] = '\0';
    return true;
}

} // namespace

Utf16Signature find_utf16(const char* buffer, std::size_t length) {
    if (length >= 2 && std::memcmp(buffer, "\xFF\xFE", 2) == 0)
        return {true, false, 2};
    if (length >= 2 && std::memcmp(buffer, "\xFE\xFF", 2) == 0)
        return {true, true, 2};
    if (length >= 4 && std::memcmp(buffer, "<\0?\0", 4) == 0)
        return {true, false, 0};
    if (length >= 4 && std::memcmp(buffer, "\0<\0?", 4) == 0)
        return {true, true, 0};
    return {};
}

bool convert_utf16(const char* bytes, std::size_t length, bool is_big_endian, const char* charset,
                   OwnedText& converted) {
    const iconv_t converter = iconv_open(charset, is_big_endian ? "UTF-16BE" : "UTF-16LE");
    if (converter == reinterpret_cast<iconv_t>(-1))
        return false;
    const std::size_t room = 2 * length + SLACK;
    OwnedText text{static_cast<char*>(std::malloc(room)), 0};
    const bool done = text.buffer != nullptr && convert_all(converter, bytes, length, text, room);
    iconv_close(converter);
    if (!done) {
        std::free(text.buffer);
        return false;
    }
    converted = text;
    return true;
}

std::string get_system_charset() {
    if (!replaced_charset.empty())
        return replaced_charset;
    const locale_t user_locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (user_locale == nullptr)
        return nl_langinfo(CODESET);
    std::string charset = nl_langinfo_l(CODESET, user_locale);
    freelocale(user_locale);
    return charset;
}

void set_system_charset(const std::string& charset) {
    replaced_charset = charset;
}

} // namespace xml
