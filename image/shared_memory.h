#pragma once

#include <cstddef>

namespace image {

/// Memory shared by two processes, which exists as long as one of them uses it. Its size is fixed, so that
/// neither process can remove pages that the other uses.
class SharedMemory {
public:
    SharedMemory() = default;
    /// Allocates `wanted` bytes. Throws std::system_error.
    explicit SharedMemory(std::size_t wanted);
    /// Takes over a descriptor from another process. Throws std::system_error, and closes the descriptor,
    /// unless it is memory of a fixed size of at least `wanted` bytes.
    SharedMemory(int received_descriptor, std::size_t wanted);
    ~SharedMemory();
    SharedMemory(SharedMemory&& other) noexcept;
    SharedMemory& operator=(SharedMemory&& other) noexcept;

    /// The first byte; null without memory. Valid until the object is destroyed or moved from.
    std::byte* data() const { return address; }
    /// In bytes.
    std::size_t size() const { return length; }
    /// Descriptor to send to the other process; -1 without memory.
    int get_descriptor() const { return descriptor; }
    /// True when `other_descriptor` is the same memory.
    bool is_same(int other_descriptor) const;

private:
    void map(bool filled);

    int descriptor = -1;
    std::byte* address = nullptr;
    std::size_t length = 0;
};

} // namespace image
