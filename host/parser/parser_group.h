#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/host_export.h"

class ParserEntry;

/// Entries in file order; several may have the same name.
class HOST_API ParserGroup {
public:
    /// An empty group; `parent` may be null and is not owned.
    explicit ParserGroup(ParserGroup* parent);
    ~ParserGroup();
    ParserGroup(const ParserGroup&) = delete;
    ParserGroup& operator=(const ParserGroup&) = delete;

    /// The enclosing group; null for a root.
    ParserGroup* get_parent() const;
    /// Count of entries.
    unsigned int get_entry_count() const;
    /// Entry at a position, owned by the group; null past the end.
    ParserEntry* get_entry(const unsigned int& index);
    const ParserEntry* get_entry(const unsigned int& index) const;
    /// First entry of exactly that name; null when there is none.
    ParserEntry* find_entry(const CoreBasicString& name);
    const ParserEntry* find_entry(const CoreBasicString& name) const;
    /// Appends an entry without values. The two numbers are the entry's position in a source text (line and
    /// column from 1; 0 and 0 for an entry made in memory).
    ParserEntry* add_entry(const CoreString& name, const unsigned long& line, const unsigned long& column);

private:
    struct State;
    std::unique_ptr<State> state;
};
