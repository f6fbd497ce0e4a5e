#pragma once

#include <string>
#include <unordered_set>

#include "colorio/ocio/types.h"
#include "host/core/core_array.h"
#include "host/core/core_string.h"

/// The labels for which `ColorIOManager::get_display_view` finds a view: those that are published and shown
/// by the active config. Lookups take constant time.
class FindableViews {
public:
    FindableViews(const CoreBasicArray<CoreString>& published, const ocio::ConstConfigRcPtr& active_config);

    bool contain(const CoreString& label) const { return shown.count(std::string(label.view())) != 0; }
    /// Records that the active config shows this view.
    void note_shown(const CoreString& label);

private:
    std::unordered_set<std::string> listed;
    std::unordered_set<std::string> shown; ///< Of those listed.
};
