#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/host_export.h"

class ParserGroup;

/// A named list of values, each a string, an integer, a real number or a group of further entries.
/// Every getter answers a position past the end, or a value of a kind that does not convert, with the neutral
/// value: empty string, 0, null. Integers convert to doubles and numbers to strings, nothing else converts.
class HOST_API ParserEntry {
public:
    explicit ParserEntry(const CoreString& name);
    ~ParserEntry();
    ParserEntry(const ParserEntry&) = delete;
    ParserEntry& operator=(const ParserEntry&) = delete;

    const CoreString& get_name() const;
    /// Line of the entry in the file it was read from, from 1; 0 for an entry made in memory.
    unsigned int get_line() const;
    void set_line(unsigned int line);

    /// Drops every value.
    void reset();
    unsigned int get_value_count() const;

    /// True when value 0 is a group.
    bool is_group() const;
    bool is_value_group(const unsigned int& index) const;
    bool is_value_string(const unsigned int& index) const;
    bool is_value_int(const unsigned int& index) const;
    bool is_value_double(const unsigned int& index) const;

    ParserGroup* get_group(const unsigned int& index);
    const ParserGroup* get_group(const unsigned int& index) const;
    CoreString get_string(const unsigned int& index) const;
    int get_int(const unsigned int& index) const;
    double get_double(const unsigned int& index) const;

    /// Appends an empty group whose enclosing group is `parent` (may be null) and returns it.
    ParserGroup* add_group(ParserGroup* parent);
    void add_string(const CoreString& value);
    void add_int(const int& value);
    void add_double(const double& value);

private:
    struct State;
    std::unique_ptr<State> state;
};
