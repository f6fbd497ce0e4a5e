#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io_auto_detection.h"
#include "host/event/event_ids.h"
#include "tests/colorio/running_module.h"

/// A detector that follows the application's mapping file, beside a running module.
class MappingFile : public RunningModule {
protected:
    using Row = std::vector<std::string>;

    void SetUp() override {
        RunningModule::SetUp();
        ASSERT_NE(ColorIOAutoDetection::get_instance(), nullptr);
        detection = ColorIOAutoDetection::get_instance();
    }

    /// Writes a mapping file and makes it the application's, without raising the event.
    std::string point_application_at(const std::string& yaml) {
        std::string path = write_file("mapping.yaml", yaml);
        want_mapping(path);
        return path;
    }
    /// The same for any path.
    void want_mapping(const std::string& path) { app.color_space_by_extension_file_path = path.c_str(); }
    /// Changes the application's mapping preferences and raises the event.
    void change_mapping(unsigned int use, const std::string& path) {
        app.use_color_space_by_extension_file = use;
        want_mapping(path);
        app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    }

    /// The table in force: format, extensions, color space per row.
    std::vector<Row> rows() const {
        std::vector<Row> table;
        for (unsigned int i = 0; i < detection->get_categories_count(); ++i)
            table.push_back({str(detection->get_file_format(i)), str(detection->get_extensions(i)),
                             str(detection->get_color_space(i))});
        return table;
    }
    std::vector<std::string> formats() const {
        std::vector<std::string> names;
        for (unsigned int i = 0; i < detection->get_categories_count(); ++i)
            names.push_back(str(detection->get_file_format(i)));
        return names;
    }

    ColorIOAutoDetection* detection = nullptr;
};

inline constexpr const char* TWO_FORMATS_AND_DEFAULT = R"(
Open EXR: {extensions: "exr, sxr", color_space: Tavelion|linear}
Scans: {extensions: "dpx, cin", color_space: Tavelion|Cineon}
default: {extensions: Other, color_space: Tavelion|sRGB}
)";
