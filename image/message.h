#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// Thrown by MessageReader when a message ends too early or holds what no message holds.
class MessageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Builds a message between two processes of the same machine: plain values in their own representation,
/// texts and lists with their count in front.
class MessageWriter {
public:
    template <class Value>
    void add(const Value& value) {
        static_assert(std::is_trivially_copyable_v<Value> && !std::is_pointer_v<Value>);
        add_bytes(&value, sizeof(value));
    }
    void add_text(const std::string& text);
    void add_bytes(const void* bytes, std::size_t size);
    /// Everything that a spec holds but attributes that point somewhere.
    void add_spec(const OIIO::ImageSpec& spec);

    const std::vector<char>& get_bytes() const { return bytes; }

private:
    void add_attribute(const OIIO::ParamValue& attribute);

    std::vector<char> bytes;
};

/// Reads such a message in the same order; trusts nothing in it. Throws MessageError.
class MessageReader {
public:
    explicit MessageReader(std::vector<char> message) : bytes(std::move(message)) {}

    template <class Value>
    Value get() {
        static_assert(std::is_trivially_copyable_v<Value> && !std::is_pointer_v<Value>);
        Value value;
        std::memcpy(&value, take(sizeof(value)), sizeof(value));
        return value;
    }
    std::string get_text();
    OIIO::ImageSpec get_spec();
    /// A count of entries that take at least `entry_bytes` each in what is left of the message.
    std::size_t get_count(std::size_t entry_bytes);

private:
    const char* take(std::size_t size);
    void get_attribute(OIIO::ImageSpec& spec);

    std::vector<char> bytes;
    std::size_t position = 0;
};

} // namespace image
