#pragma once

#include <string>

#include "colorio/ocio/config.h"

/// Calls `visit(display, view)` for the views of one display, in order, until it returns true. Returns
/// whether it did.
template <class Visit>
bool find_view_of_display(const ocio::ConstConfigRcPtr& config, const std::string& display, Visit&& visit) {
    for (const std::string& view : ocio::list_views(config, display.c_str()))
        if (visit(display.c_str(), view.c_str()))
            return true;
    return false;
}

/// The same for every display in order.
template <class Visit>
bool find_view(const ocio::ConstConfigRcPtr& config, Visit&& visit) {
    const int count = ocio::get_num_displays(config);
    for (int index = 0; index < count; ++index)
        if (find_view_of_display(config, ocio::get_display(config, index), visit))
            return true;
    return false;
}
