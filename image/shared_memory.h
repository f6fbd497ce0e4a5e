#pragma once

#include <cstddef>

namespace image {

/// Memory that two processes see, kept alive by either of them. Its size never changes, so that no process
/// can take pages away from the other.
class SharedMemory {
public:
    SharedMemory() = default;
    /// Throws std::system_error.
    explicit SharedMemory(std::size_t wanted);
    /// Takes over a descriptor from another process. Throws std::system_error when it is not memory of at
    /// least `wanted` bytes whose size is fixed.
    SharedMemory(int received_descriptor, std::size_t wanted);
    ~SharedMemory();
    SharedMemory(SharedMemory&& other) noexcept;
    SharedMemory& operator=(SharedMemory&& other) noexcept;

    std::byte* data() const { return address; }
    std::size_t size() const { return length; }
    /// -1 without memory.
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
