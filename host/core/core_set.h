#pragma once

#include <set>

/// A set of distinct values ordered by `<`.
template <class T>
class CoreSet {
public:
    /// Adds `value`; false when it is already in the set.
    bool add(const T& value) { return values.insert(value).second; }
    /// Whether `value` is in the set.
    bool contains(const T& value) const { return values.count(value) != 0; }
    /// Count of values.
    unsigned int get_count() const { return static_cast<unsigned int>(values.size()); }

private:
    std::set<T> values;
};
