#pragma once

/// Four numbers in memory order; as a color: red, green, blue, alpha.
template <class T>
class GMathVec4 {
public:
    GMathVec4() : values{} {}
    GMathVec4(T x, T y, T z, T w) : values{x, y, z, w} {}

    T& operator[](unsigned int index) { return values[index]; }
    const T& operator[](unsigned int index) const { return values[index]; }
    T* get_data() { return values; }
    const T* get_data() const { return values; }

private:
    T values[4];
};
