#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

namespace workflow {

/// Bytes that the images in flight may take together. Thread-safe.
class MemoryBudget {
public:
    explicit MemoryBudget(std::uint64_t bytes) : total(bytes) {}

    /// Takes `bytes` if that many are free, or if nothing is taken: an image that needs more than the whole
    /// budget is converted while there is no other.
    bool try_to_take(std::uint64_t bytes);
    /// Waits for them.
    void take(std::uint64_t bytes);
    void give_back(std::uint64_t bytes);
    /// Whether that many are less than the whole budget.
    bool covers(std::uint64_t bytes) const { return bytes <= total; }

private:
    bool has_room(std::uint64_t bytes) const {
        return taken == 0 || (taken <= total && bytes <= total - taken);
    }

    const std::uint64_t total;
    std::uint64_t taken = 0;
    std::mutex mutex;
    std::condition_variable change;
};

/// The bytes that one user of a budget has taken; gives them back when it is destroyed. For one thread at a
/// time.
class MemoryShare {
public:
    /// Without a budget any size is granted.
    explicit MemoryShare(MemoryBudget* budget = nullptr) : budget(budget) {}
    ~MemoryShare() { release(); }
    MemoryShare(const MemoryShare&) = delete;
    MemoryShare& operator=(const MemoryShare&) = delete;

    /// Holds at least `bytes`. False when there is no room for what it needs in addition.
    bool try_to_hold(std::uint64_t bytes);
    /// The same, but waits. It must not hold anything: others may wait for that.
    void hold(std::uint64_t bytes);
    void release();
    /// Whether the whole budget has as many bytes.
    bool is_enough_for(std::uint64_t bytes) const { return !budget || budget->covers(bytes); }

private:
    MemoryBudget* budget;
    std::uint64_t held = 0;
};

/// Half of the physical memory, in bytes.
std::uint64_t get_default_memory();

/// Bytes of memory that this process has in use.
std::uint64_t get_used_memory();

/// Parses "500M", "1.5G", "1073741824": bytes, or units of 1024, 1024^2, 1024^3 or 1024^4 (K, M, G, T, in any
/// case, also as "MB" and "MiB"). Throws diagnostics::Failure.
std::uint64_t parse_memory_size(const std::string& text);

} // namespace workflow
