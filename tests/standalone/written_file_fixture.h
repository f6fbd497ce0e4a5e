#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"
#include "tests/standalone/described_entries.h"
#include "tests/support/temp_dir.h"

class WriteParserFile : public testing::Test {
protected:
    ParserEntry& add(const std::string& name) {
        return *file.get_root().add_entry(CoreString(std::string_view(name)), 0, 0);
    }
    std::string write() {
        EXPECT_TRUE(file.write(folder.file("file.yaml").c_str())) << file.get_error().get_data();
        return folder.read("file.yaml");
    }
    std::string read_back() {
        ParserFile other;
        if (!other.read(folder.file("file.yaml").c_str(), "", ""))
            return std::string("error: ") + other.get_error().get_data();
        return describe(other.get_root());
    }
    void expect_round_trip() {
        const std::string before = describe(file.get_root());
        const std::string text = write();
        EXPECT_TRUE(read_back() == before) << text.substr(0, 2000);
    }

    TempDir folder;
    ParserFile file;
};
