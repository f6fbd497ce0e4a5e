#pragma once

#include <string>
#include <unordered_map>

#include "colorio/color_io_manager.h"

/// Remembers the records from which the color spaces of the CDL config were made, so that unchanged records
/// are not added again.
class AddedCDLs {
public:
    using Def = ColorIOManager::ColorDecisionListDef;
    using List = CoreVector<Def>;

    /// True when the color space of that name was last made from an equal record, in the same way: from the
    /// record's file or from its numbers.
    bool holds(const Def& def, bool from_file) const;
    void remember(const Def& def, bool from_file);

    /// Records that `list` was added. It is complete if every custom record of it was added and none has the
    /// name of a built-in one.
    void note_list(const List& list);
    /// From now on no list is complete.
    void forget_list();
    /// True when `list`, identified by its address, is complete and none of its files appeared or disappeared
    /// since; then only the record returned by `find_replaced` must be added again.
    bool is_complete(const List& list) const;
    /// The record of the complete list whose color space was replaced by a record from elsewhere, unless
    /// `def` has the same name; null when there is none.
    const Def* find_replaced(const Def& def) const;

private:
    struct Source {
        Def def;
        bool from_file;
    };

    bool holds_as_before(const Def& def) const;

    /// By name in lower case: OpenColorIO ignores case.
    std::unordered_map<std::string, Source> sources;

    const List* complete_list = nullptr;         ///< Compared, never dereferenced: its owner may be gone.
    std::unordered_map<std::string, Def> listed; ///< Its custom records, by the same key.
    std::unordered_map<std::string, bool> list_files; ///< Path, and whether it existed.
    std::string replaced_key;
};
