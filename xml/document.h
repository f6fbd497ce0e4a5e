#pragma once

#include <cstddef>

namespace xml {

/// Storage of one tree: its records, arrays and strings are in shared blocks that are freed together with the
/// last handle to any node of the tree, and not before. Not thread-safe.
class Document {
public:
    /// A document with a count of 1 and room for about `expected_bytes`; null when memory is short.
    static Document* create(std::size_t expected_bytes) noexcept;
    /// A document without storage, for the shared empty node; it must never be released to zero.
    constexpr Document() noexcept = default;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// Adds a handle.
    void retain() noexcept { ++handle_count; }
    /// Removes a handle; the last one frees everything, this object included.
    void release() noexcept;

    /// `bytes` of uninitialized storage; `alignment` is a power of two up to 16. Null when memory is short.
    void* allocate(std::size_t bytes, std::size_t alignment) noexcept {
        const std::size_t padding = (0 - reinterpret_cast<std::size_t>(next_free)) & (alignment - 1);
        const auto available = static_cast<std::size_t>(block_end - next_free);
        if (padding > available || bytes > available - padding || next_free == nullptr)
            return allocate_in_new_block(bytes);
        char* result = next_free + padding;
        next_free = result + bytes;
        return result;
    }
    /// Uninitialized storage for `count` elements; null when memory is short.
    template <class T>
    T* allocate_array(std::size_t count) noexcept {
        return static_cast<T*>(allocate(count * sizeof(T), alignof(T)));
    }
    /// A zero-terminated copy of `length` bytes; null when memory is short.
    char* copy_string(const char* text, std::size_t length) noexcept;

    /// Takes ownership of a buffer from malloc, which is freed with the document.
    void adopt_text(char* buffer) noexcept { adopted_text = buffer; }

private:
    struct Block {
        Block* previous;
    };

    void* allocate_in_new_block(std::size_t bytes) noexcept;

    char* next_free = nullptr;
    char* block_end = nullptr;
    Block* last_block = nullptr;
    char* adopted_text = nullptr;
    std::size_t next_block_size = 0;
    long handle_count = 1;
};

} // namespace xml
