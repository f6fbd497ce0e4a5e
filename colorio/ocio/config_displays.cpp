#include "colorio/ocio/config.h"

namespace ocio {

int get_num_displays(const ConstConfigRcPtr& config) {
    return config->getNumDisplays();
}

const char* get_display(const ConstConfigRcPtr& config, int index) {
    return config->getDisplay(index);
}

const char* get_default_display(const ConstConfigRcPtr& config) {
    return config->getDefaultDisplay();
}

int get_num_views(const ConstConfigRcPtr& config, const char* display) {
    return config->getNumViews(display);
}

const char* get_view(const ConstConfigRcPtr& config, const char* display, int index) {
    return config->getView(display, index);
}

const char* get_default_view(const ConstConfigRcPtr& config, const char* display) {
    return config->getDefaultView(display);
}

void clear_displays(const ConfigRcPtr& config) {
    config->clearDisplays();
}

} // namespace ocio
