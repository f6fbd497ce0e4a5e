#pragma once

#include <string>
#include <unordered_map>

#include "colorio/color_io_manager.h"

/// Remembers from which records the colour spaces of the CDL configuration were made.
class AddedCDLs {
public:
    /// True when the colour space of that name was last made from an equal record, in the same way: from the
    /// record's file or from its numbers.
    bool holds(const ColorIOManager::ColorDecisionListDef& def, bool from_file) const;
    void remember(const ColorIOManager::ColorDecisionListDef& def, bool from_file);

private:
    struct Source {
        ColorIOManager::ColorDecisionListDef def;
        bool from_file;
    };

    /// By name in lower case: the colour library tells no cases apart.
    std::unordered_map<std::string, Source> sources;
};
