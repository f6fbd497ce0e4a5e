#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

using CdlDef = ColorIOManager::ColorDecisionListDef;

/// The running module's CDLs and its CDL library.
class CdlRegistry : public ConverterTest {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }
    std::vector<std::string> published() { return strings(manager().get_CDL_names()); }
    const CoreVector<CdlDef>& records() { return manager().get_tavelion_color_decision_lists(); }
    std::vector<std::string> record_names() {
        std::vector<std::string> names;
        for (const CdlDef& record : records())
            names.push_back(str(record.name));
        return names;
    }

    static LogLine duplicate(const std::string& name) {
        return warning("Color Management: duplicate CDL '" + name +
                       "' is already defined in the current configuration.\n");
    }

    /// Makes a file of that text the application's CDL library and raises the event; returns its path.
    std::string use_library(const std::string& text, const char* name = "library.ccc") {
        const std::string path = write_file(name, text);
        follow_library(path);
        return path;
    }
    void follow_library(const std::string& path) {
        app.cdl_library_file_path = path.c_str();
        app.raise_event(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    }

    /// Red of the gray that the CDL of that name makes of `value`.
    float grade(const char* name, float value) {
        EXPECT_TRUE(converter->configure_CDL("No CDL", name)) << name;
        return convert(value, value, value)[0];
    }
};
