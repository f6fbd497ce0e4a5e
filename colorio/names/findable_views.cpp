#include "colorio/names/findable_views.h"

#include "colorio/color_io_manager.h"
#include "colorio/names/display_view_walk.h"

FindableViews::FindableViews(const CoreBasicArray<CoreString>& published,
                             const ocio::ConstConfigRcPtr& active_config) {
    for (const CoreString& label : published)
        listed.emplace(label.view());
    if (active_config && !listed.empty())
        find_view(active_config, [this](const char* display, const char* view) {
            note_shown(CoreString(display) + ColorIOManager::DISPLAY_SEPARATOR + view);
            return false;
        });
}

void FindableViews::note_shown(const CoreString& label) {
    const auto published = listed.find(std::string(label.view()));
    if (published != listed.end())
        shown.insert(*published);
}
