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

/// Thrown by MessageReader for a truncated or invalid message.
class MessageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Builds a message between two processes of the same machine: plain values as their bytes, texts and lists
/// preceded by their count.
class MessageWriter {
public:
    template <class Value>
    void add(const Value& value) {
        static_assert(std::is_trivially_copyable_v<Value> && !std::is_pointer_v<Value>);
        add_bytes(&value, sizeof(value));
    }
    void add_text(const std::string& text);
    void add_bytes(const void* bytes, std::size_t size);
    /// Adds a spec; leaves out attributes that contain pointers.
    void add_spec(const OIIO::ImageSpec& spec);

    const std::vector<char>& get_bytes() const { return bytes; }

private:
    void add_attribute(const OIIO::ParamValue& attribute);

    std::vector<char> bytes;
};

/// Reads a message of MessageWriter in the same order. Safe with any bytes: everything that is not a valid
/// message throws MessageError.
class MessageReader {
public:
    explicit MessageReader(std::vector<char> message) : bytes(std::move(message)) {}

    /// The next value. Throws MessageError at the end of the message.
    template <class Value>
    Value get() {
        static_assert(std::is_trivially_copyable_v<Value> && !std::is_pointer_v<Value>);
        Value value;
        std::memcpy(&value, take(sizeof(value)), sizeof(value));
        return value;
    }
    /// Throws MessageError when the rest of the message is shorter than the text.
    std::string get_text();
    /// Throws MessageError when the rest of the message is shorter or has invalid types or sizes.
    OIIO::ImageSpec get_spec();
    /// Reads the count of a list. Throws MessageError if the rest of the message is shorter than that many
    /// entries of at least `entry_bytes` bytes.
    std::size_t get_count(std::size_t entry_bytes);

private:
    const char* take(std::size_t size);
    void get_attribute(OIIO::ImageSpec& spec);

    std::vector<char> bytes;
    std::size_t position = 0;
};

} // namespace image
