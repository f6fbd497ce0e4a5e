#pragma once

#include <unistd.h>

#include <utility>

namespace files {

/// Owns a file descriptor of the system.
class Descriptor {
public:
    Descriptor() = default;
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

    bool is_open() const { return number >= 0; }
    int get() const { return number; }
    /// Closes it now; false when the system reports an error, as a full disk does on some file systems.
    bool close() { return ::close(std::exchange(number, -1)) == 0; }

private:
    int number = -1;
};

} // namespace files
