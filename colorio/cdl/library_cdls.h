#pragma once

#include <string>
#include <unordered_set>

#include "colorio/color_io_manager.h"

/// The corrections (file and id) that a list contained at one moment.
class KnownCDLs {
public:
    explicit KnownCDLs(const CoreVector<ColorIOManager::ColorDecisionListDef>& list);

    /// True when the list contained a record of the same file and id.
    bool contains(const ColorIOManager::ColorDecisionListDef& def) const;

private:
    std::unordered_set<std::string> keys;
};

/// Removes the records of `library` from `list`, with the result of scanning the list for the same file and
/// id once per record. A scan continues after the record that moved into a removed one's place, so it leaves
/// the second of two adjacent matches. Takes about one step per record, not one scan.
void remove_library_CDLs(const CoreVector<ColorIOManager::ColorDecisionListDef>& library,
                         CoreVector<ColorIOManager::ColorDecisionListDef>& list);
