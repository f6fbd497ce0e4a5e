#pragma once

#include <string>
#include <string_view>

#include "host/core/core_string_view.h"
#include "host/core/core_vector.h"
#include "host/host_export.h"

class CoreString;

/// Read-only byte string; the parameter type of functions that only read a text.
class HOST_API CoreBasicString {
public:
    CoreBasicString() = default;
    CoreBasicString(const char* text);           ///< A null pointer gives the empty string.
    CoreBasicString(const CoreStringView& text); ///< Copies the characters.
    CoreBasicString(std::string_view text);      ///< Copies the characters.

    /// The characters, NUL-terminated; never null.
    const char* get_data() const { return text.c_str(); }
    /// Count of bytes without the NUL.
    unsigned int get_count() const { return static_cast<unsigned int>(text.size()); }
    /// True when the length is 0.
    bool is_empty() const { return text.empty(); }
    /// Jenkins one-at-a-time hash of the bytes.
    unsigned int get_hash() const;
    /// The bytes; valid until the string changes.
    std::string_view view() const { return text; }

    /// Position of `character` at or after `start`; 0xFFFFFFFF when absent.
    unsigned int find(char character, unsigned int start = 0) const;
    /// Exact comparison of bytes; every string starts with the empty one.
    bool start_with(const CoreBasicString& prefix) const;

    /// Copy with the ASCII letters in lower case, in every locale.
    CoreString get_lower_case() const;
    /// The pieces between occurrences of `separator`, empty ones included; the empty string gives none.
    CoreVector<CoreString> split(char separator) const;
    /// The words between runs of blanks, tabs and line ends, where `separators` names the blank " ";
    /// any other text splits at runs of its characters. No word is empty.
    CoreVector<CoreString> split_word(const CoreBasicString& separators) const;
    /// Value of the decimal number at the start of the text, after blanks, with '.' as the decimal point in
    /// every locale; "inf" and "nan" (any case) are numbers, hexadecimal ones are not. Infinity beyond the
    /// range of a double; 0 when the text does not start with one.
    double to_double() const;

    friend bool operator==(const CoreBasicString& a, const CoreBasicString& b) { return a.text == b.text; }
    friend bool operator!=(const CoreBasicString& a, const CoreBasicString& b) { return a.text != b.text; }
    friend bool operator<(const CoreBasicString& a, const CoreBasicString& b) { return a.text < b.text; }

protected:
    std::string text;
};

/// The host's byte string.
class HOST_API CoreString : public CoreBasicString {
public:
    using CoreBasicString::CoreBasicString;
    CoreString() = default;
    CoreString(const CoreBasicString& other); ///< Copies the characters.

    /// Shortest decimal form that reads back to the same value, independent of the process locale.
    static CoreString from_float(float value);
    /// The same for a double.
    static CoreString from_double(double value);
    /// Decimal digits.
    static CoreString from_unsigned(unsigned int value);
    /// Decimal digits, with '-' for negative numbers.
    static CoreString from_int(int value);
    /// The one shared empty string.
    static const CoreString& get_null_string();

    /// Text after the first `separator`; the whole text when it holds none.
    static CoreString after_first(const CoreBasicString& text, char separator);
    /// Text before the first `separator`; the whole text when it holds none.
    static CoreString before_first(const CoreBasicString& text, char separator);

    void set_data(const char* characters); ///< A null pointer gives the empty string.
    void lower_case();                     ///< ASCII letters only, in every locale.
    /// Replaces every `from` by `to`.
    void replace(char from, char to);
    /// Replaces `from` by `to`: every occurrence when `all` is true, the first one otherwise.
    void replace(const CoreBasicString& from, const CoreBasicString& to, bool all);

    CoreString& operator+=(char character);               ///< Appends.
    CoreString& operator+=(const CoreBasicString& other); ///< Appends; `other` may be this string.
};

/// Concatenation.
HOST_API CoreString operator+(const CoreBasicString& a, const CoreBasicString& b);
/// Concatenation.
HOST_API CoreString operator+(const CoreBasicString& a, char b);
