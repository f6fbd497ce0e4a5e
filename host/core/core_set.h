#pragma once

#include <set>

/// A set of distinct values ordered by `<`.
template <class T>
class CoreSet {
public:
    /// Adds `value`; false when the set holds it already.
    bool add(const T& value) { return values.insert(value).second; }
    bool contains(const T& value) const { return values.count(value) != 0; }
    unsigned int get_count() const { return static_cast<unsigned int>(values.size()); }

private:
    std::set<T> values;
};
