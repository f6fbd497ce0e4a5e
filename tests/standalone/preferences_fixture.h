#pragma once

#include <string>

#include <gtest/gtest.h>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"
#include "standalone/preferences.h"
#include "standalone/standalone_app.h"
#include "tests/standalone/described_entries.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

/// Saves as the module does: resets the entry, and writes its entries.
inline bool save_one_space(ParserEntry* entry) {
    entry->reset();
    ParserGroup& group = *entry->add_group(nullptr);
    group.add_entry("space", 0, 0)->add_string("plate");
    group.add_entry("extension", 0, 0)->add_string("OpenEXR");
    return true;
}

/// The module when it has nothing to save.
inline bool save_nothing(ParserEntry* entry) {
    entry->reset();
    return false;
}

class Preferences : public testing::Test {
protected:
    std::string describe_file() {
        ParserFile file;
        EXPECT_TRUE(file.read(path.c_str(), "", "")) << file.get_error().get_data();
        return describe(file.get_root());
    }

    RecordingLog log;
    TempDir folder;
    std::string path = folder.file("config/qb_colorio/preferences.yaml");
    PreferenceFile preferences{path.c_str()};
    StandaloneApp app;
};

/// The first line of every file.
inline constexpr const char* MARKER = "file_type: \"qb_colorio preferences\"\n";

/// The entries of an application that nothing was set in.
inline constexpr const char* DEFAULTS =
    "file_type=s\"qb_colorio preferences\"; color_space_file_path=s\"\"; cdl_library_file_path=s\"\"; "
    "default_color_space_name=s\"linear\"; color_space_by_extension_file_path=s\"\"; "
    "use_color_space_file=i0; use_color_space_by_extension_file=i0; ";
