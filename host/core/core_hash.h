#pragma once

/// Hash functions of the host core library.
class CoreHash {
public:
    /// Jenkins one-at-a-time hash of `length` bytes of `text`, modulo 2^32. The empty text gives 0.
    /// Source: Bob Jenkins, "Hash Functions", Dr. Dobb's Journal, September 1997.
    static constexpr unsigned int generate_jenkins(const char* text, unsigned int length) {
        unsigned int value = 0;
        for (unsigned int i = 0; i < length; ++i) {
            value += static_cast<unsigned char>(text[i]);
            value += value << 10;
            value ^= value >> 6;
        }
        value += value << 3;
        value ^= value >> 11;
        value += value << 15;
        return value;
    }

    /// The same for a NUL-terminated text.
    static constexpr unsigned int generate_jenkins(const char* text) {
        unsigned int length = 0;
        while (text[length] != '\0')
            ++length;
        return generate_jenkins(text, length);
    }
};
