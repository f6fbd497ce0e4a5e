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

std::string version_of(const std::string& text) {
    const TempDir folder;
    return ocio::xml_root_attribute(folder.write("file.xml", text), "version");
}

TEST(XmlRoot, GivesItsAttributes) {
    EXPECT_EQ(version_of("<?xml version='1.0'?><a id=\"b version='1'\" version = '2.1' >"), "2.1");
    EXPECT_EQ(version_of("<a\n\tversion=\"99\"/>"), "99");
    EXPECT_EQ(version_of("<a><b version='1'/></a>"), "");
    EXPECT_EQ(version_of("<a reversion='1'>"), "");
    EXPECT_EQ(version_of("<a version>"), "");
    EXPECT_EQ(version_of("<a version='1"), "");
    EXPECT_EQ(version_of("<a"), "");
    EXPECT_EQ(version_of(""), "");
}

} // namespace
