#pragma once

/// Four numbers in memory order; as a color: red, green, blue, alpha.
template <class T>
class GMathVec4 {
public:
    GMathVec4() : values{} {} ///< Four zeros.
    GMathVec4(T x, T y, T z, T w) : values{x, y, z, w} {}

    /// Number `index`, which must be 0 to 3.
    T& operator[](unsigned int index) { return values[index]; }
    const T& operator[](unsigned int index) const { return values[index]; }
    /// The first of the four numbers.
    T* get_data() { return values; }
    const T* get_data() const { return values; }

private:
    T values[4];
};
