#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_manager.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

using CdlDef = ColorIOManager::ColorDecisionListDef;

inline std::string content_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Documents read and written by a manager without a host.
class CdlDocument : public ManagerTest {
protected:
    void SetUp() override {
        // The XML library writes in the encoding of the last file it read.
        read(correction_text("x", "1"));
        take_log();
    }

    /// A record of odd values, to see which of them are replaced.
    static CdlDef odd_record() {
        CdlDef record = cdl_record("odd", {{10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 40});
        record.file = "some file";
        record.cccid = "some id";
        record.is_builtin = true;
        return record;
    }
    CdlDef read(const std::string& text, bool collection = false) {
        path = write_file("cdl.xml", text);
        CdlDef record = odd_record();
        manager.read_CDL_from_XML(path.c_str(), record, collection);
        EXPECT_EQ(str(record.name), "odd");
        EXPECT_EQ(str(record.file), "some file");
        EXPECT_EQ(str(record.cccid), "some id");
        return record;
    }
    LogLine missing(const std::string& element) const {
        return {1, "Node '" + element + "' not find in '" + path + "'.\n"};
    }

    static CoreVector<CdlDef> list(std::initializer_list<CdlDef> records) {
        CoreVector<CdlDef> result;
        for (const CdlDef& record : records)
            result.append(record);
        return result;
    }
    /// Writes a document and returns its bytes.
    std::string written(std::initializer_list<CdlDef> records, bool collection) {
        const std::string target = path_of("written.xml");
        EXPECT_TRUE(manager.create_XML_from_CDL(list(records), target.c_str(), collection));
        return content_of(target);
    }

    ColorIOManager manager{nullptr};
    std::string path;
};

inline void expect_values(const CdlDef& record, const std::vector<float>& slope,
                          const std::vector<float>& offset, const std::vector<float>& power,
                          float saturation) {
    EXPECT_THAT(record.slope, testing::ElementsAreArray(slope));
    EXPECT_THAT(record.offset, testing::ElementsAreArray(offset));
    EXPECT_THAT(record.power, testing::ElementsAreArray(power));
    EXPECT_EQ(record.saturation, saturation);
}
