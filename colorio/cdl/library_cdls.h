#pragma once

#include <string>
#include <unordered_set>

#include "colorio/color_io_manager.h"

/// Tells which corrections of which files a list held at one moment.
class KnownCDLs {
public:
    explicit KnownCDLs(const CoreVector<ColorIOManager::ColorDecisionListDef>& list);

    /// True when the list held a record of the same file and id.
    bool contains(const ColorIOManager::ColorDecisionListDef& def) const;

private:
    std::unordered_set<std::string> keys;
};

/// Removes the records of `library` from `list`: record by record, scanning the list for the same file and
/// id. A scan goes on behind the record that moved up into a removed one's place, so of two adjacent matches
/// it leaves the second. Costs about one step per record, not one scan.
void remove_library_CDLs(const CoreVector<ColorIOManager::ColorDecisionListDef>& library,
                         CoreVector<ColorIOManager::ColorDecisionListDef>& list);
