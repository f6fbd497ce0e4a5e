#pragma once

#include <cstddef>
#include <cstdint>

namespace pixel {

/// Prefetches the memory of the next block, line by line, while the kernels work on the current one. All at
/// once would fill the processor's queue of misses, and the kernels would wait. Alternating between planes
/// was measured to be faster than one plane after the other.
class Lookahead {
public:
    /// Removes all ranges.
    void clear() { count_ = current_ = 0; }
    /// Adds a range; at most four, one per plane.
    void add(const float* from, std::size_t floats) {
        const auto begin = reinterpret_cast<std::uintptr_t>(from);
        range_[count_++] = {begin, begin + floats * sizeof(float)};
    }
    /// Prefetches the next line into the first-level cache, if any is left.
    void fetch_line() {
        if (count_ == 0) {
            return;
        }
        Range& range = range_[current_];
        // A number, because the last line may end behind the range.
        const auto* line = reinterpret_cast<const void*>(range.begin); // NOLINT(performance-no-int-to-ptr)
        __builtin_prefetch(line, 0, 3);
        range.begin += LINE;
        if (range.begin >= range.end) {
            range = range_[--count_];
        } else {
            ++current_;
        }
        if (current_ >= count_) {
            current_ = 0;
        }
    }

private:
    static constexpr std::uintptr_t LINE = 64;
    struct Range {
        std::uintptr_t begin, end;
    };
    Range range_[4];
    std::size_t count_ = 0, current_ = 0;
};

} // namespace pixel
