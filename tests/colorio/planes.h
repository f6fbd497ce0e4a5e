#pragma once

#include <cstddef>
#include <vector>

/// Four planes of `count` values in [0, 1], different in each.
struct Planes {
    explicit Planes(size_t count) : r(count), g(count), b(count), a(count) {
        for (size_t i = 0; i < count; ++i) {
            r[i] = static_cast<float>(i) / count;
            g[i] = static_cast<float>(count - i) / count;
            b[i] = static_cast<float>((i * 5) % count) / count;
            a[i] = static_cast<float>((i * 3) % count) / count;
        }
    }
    friend bool operator==(const Planes& x, const Planes& y) {
        return x.r == y.r && x.g == y.g && x.b == y.b && x.a == y.a;
    }
    std::vector<float> r, g, b, a;
};
