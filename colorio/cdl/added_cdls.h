#pragma once

#include <string>
#include <unordered_map>

#include "colorio/color_io_manager.h"

/// Remembers from which records the color spaces of the CDL configuration were made, so that records which
/// did not change are not added again.
class AddedCDLs {
public:
    using Def = ColorIOManager::ColorDecisionListDef;
    using List = CoreVector<Def>;

    /// True when the color space of that name was last made from an equal record, in the same way: from the
    /// record's file or from its numbers.
    bool holds(const Def& def, bool from_file) const;
    void remember(const Def& def, bool from_file);

    /// Takes note that `list` was added. It counts as complete if every custom record of it is held, and none
    /// shares its name with a built-in one.
    void note_list(const List& list);
    /// From now on no list is complete.
    void forget_list();
    /// True when `list`, told apart by its address, is complete, no file of it came or went since, and so
    /// nothing of it needs to be added again but `find_replaced`.
    bool is_complete(const List& list) const;
    /// The record of the complete list whose color space a record from elsewhere stands in for, unless `def`
    /// bears the same name; null when there is none.
    const Def* find_replaced(const Def& def) const;

private:
    struct Source {
        Def def;
        bool from_file;
    };

    bool holds_as_before(const Def& def) const;

    /// By name in lower case: OpenColorIO tells no cases apart.
    std::unordered_map<std::string, Source> sources;

    const List* complete_list = nullptr;              ///< Compared, never followed: its owner may be gone.
    std::unordered_map<std::string, Def> listed;      ///< Its custom records, by the same key.
    std::unordered_map<std::string, bool> list_files; ///< Path, and whether it existed.
    std::string replaced_key;
};
