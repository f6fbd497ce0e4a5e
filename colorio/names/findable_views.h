#pragma once

#include <string>
#include <unordered_set>

#include "colorio/ocio/types.h"
#include "host/core/core_array.h"
#include "host/core/core_string.h"

/// The labels for which `ColorIOManager::get_display_view` finds a view: those that are published and shown
/// by the active configuration. Answers in constant time, for whoever asks about many.
class FindableViews {
public:
    FindableViews(const CoreBasicArray<CoreString>& published, const ocio::ConstConfigRcPtr& active_config);

    bool contain(const CoreString& label) const { return shown.count(std::string(label.view())) != 0; }
    /// Takes note that the active configuration shows this view now.
    void note_shown(const CoreString& label);

private:
    std::unordered_set<std::string> listed;
    std::unordered_set<std::string> shown; ///< Of those listed.
};
