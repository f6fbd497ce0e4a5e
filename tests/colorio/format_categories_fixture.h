#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_auto_detection.h"
#include "tests/colorio/running_module.h"

/// A fresh detector beside a running module with the built-in configuration.
class FormatCategories : public RunningModule {
protected:
    /// Every format of the table in force, in order.
    std::vector<std::string> formats() const {
        std::vector<std::string> names;
        for (unsigned int i = 0; i < detection.get_categories_count(); ++i)
            names.push_back(str(detection.get_file_format(i)));
        return names;
    }
    std::string extensions(const char* format) const {
        return str(detection.get_extension_from_file_format(format));
    }
    std::string space(const char* format) const {
        return str(detection.get_default_color_space_from_file_format(format));
    }
    std::string lookup(const char* extension) {
        return str(detection.get_default_color_space_from_extension(extension));
    }

    ColorIOAutoDetection detection{nullptr};
};
