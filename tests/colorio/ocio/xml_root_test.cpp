#include "colorio/ocio/xml_root.h"

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

std::string root_of(const std::string& text) {
    const TempDir folder;
    return ocio::xml_root_name(folder.write("file.xml", text));
}

TEST(XmlRoot, IsTheOutermostElement) {
    EXPECT_EQ(root_of("<a><b/></a>"), "a");
    EXPECT_EQ(root_of("<a\n id='1'>"), "a");
    EXPECT_EQ(root_of("<a/>"), "a");
}

TEST(XmlRoot, ComesAfterWhateverPrecedesIt) {
    EXPECT_EQ(root_of("\xEF\xBB\xBF<?xml version='1.0'?> <!-- <x> --><?p <y>?><a>"), "a");
    EXPECT_EQ(root_of("<!DOCTYPE a SYSTEM 'a.dtd'><a>"), "a");
}

TEST(XmlRoot, IsEmptyWhereThereIsNone) {
    EXPECT_EQ(root_of(""), "");
    EXPECT_EQ(root_of("no element"), "");
    EXPECT_EQ(root_of("<!-- <a>"), "");
    EXPECT_EQ(root_of(std::string(70000, ' ') + "<a>"), "");
    EXPECT_EQ(ocio::xml_root_name("/nowhere/at.all"), "");
}

} // namespace
