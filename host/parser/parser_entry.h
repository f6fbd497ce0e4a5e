#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/host_export.h"

class ParserGroup;

/// A named list of values, each a string, an integer, a real number or a group of further entries.
/// For a position past the end, or a value of a type that does not convert, getters return the empty string,
/// 0 or null. Integers convert to doubles and numbers to strings; other types do not convert.
class HOST_API ParserEntry {
public:
    /// An entry without values.
    explicit ParserEntry(const CoreString& name);
    ~ParserEntry();
    ParserEntry(const ParserEntry&) = delete;
    ParserEntry& operator=(const ParserEntry&) = delete;

    /// The name; not unique within a group.
    const CoreString& get_name() const;
    /// Line of the entry in the file it was read from, from 1; 0 for an entry made in memory.
    unsigned int get_line() const;
    /// See `get_line`.
    void set_line(unsigned int line);

    /// Removes every value.
    void reset();
    /// Count of values.
    unsigned int get_value_count() const;

    /// True when value 0 is a group.
    bool is_group() const;
    /// The type of a value; false past the end.
    bool is_value_group(const unsigned int& index) const;
    /// The same for strings.
    bool is_value_string(const unsigned int& index) const;
    /// The same for integers.
    bool is_value_int(const unsigned int& index) const;
    /// The same for real numbers.
    bool is_value_double(const unsigned int& index) const;

    /// A value that is a group, owned by the entry; null for other types.
    ParserGroup* get_group(const unsigned int& index);
    const ParserGroup* get_group(const unsigned int& index) const;
    /// A string, or a number as text; empty for a group.
    CoreString get_string(const unsigned int& index) const;
    /// An integer; 0 for other types, real numbers included.
    int get_int(const unsigned int& index) const;
    /// A real number or an integer; 0 for other types.
    double get_double(const unsigned int& index) const;

    /// Appends an empty group whose enclosing group is `parent` (may be null) and returns it.
    ParserGroup* add_group(ParserGroup* parent);
    /// Appends a string.
    void add_string(const CoreString& value);
    /// Appends an integer.
    void add_int(const int& value);
    /// Appends a real number.
    void add_double(const double& value);

private:
    struct State;
    std::unique_ptr<State> state;
};
