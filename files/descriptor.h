#pragma once

#include <unistd.h>

#include <utility>

namespace files {

/// Owns a file descriptor; movable.
class Descriptor {
public:
    Descriptor() = default;
    /// Takes ownership of `number`; a negative one means none.
    explicit Descriptor(int number) : number(number) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor() {
        if (is_open())
            ::close(number);
    }

    /// Whether it has a descriptor.
    bool is_open() const { return number >= 0; }
    /// The descriptor, still owned; -1 without one.
    int get() const { return number; }
    /// Closes it; false with errno when the system reports an error, for example for a full disk.
    bool close() { return ::close(std::exchange(number, -1)) == 0; }

private:
    int number = -1;
};

} // namespace files
