#include "standalone/parser/base64.h"

namespace {

constexpr std::string_view ALPHABET = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view BLANKS = " \t\r\n";

} // namespace

std::optional<std::string> decode_base64(std::string_view text) {
    std::string bytes;
    unsigned int bits = 0; // of the group of four characters at hand, six for each
    unsigned int count = 0;
    unsigned int padding = 0;
    for (const char character : text) {
        if (BLANKS.find(character) != std::string_view::npos)
            continue;
        const size_t value = ALPHABET.find(character);
        if (character == '=')
            ++padding;
        else if (value == std::string_view::npos || padding > 0)
            return std::nullopt;
        bits = bits << 6 | (character == '=' ? 0 : static_cast<unsigned int>(value));
        if (++count % 4 == 0)
            for (const unsigned int shift : {16, 8, 0})
                bytes += static_cast<char>(bits >> shift & 0xFF);
    }
    if (count % 4 != 0 || padding > 2)
        return std::nullopt;
    bytes.resize(bytes.size() - padding);
    return bytes;
}
