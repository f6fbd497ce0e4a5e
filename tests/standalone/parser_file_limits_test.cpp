#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/standalone/written_file_fixture.h"

using testing::HasSubstr;

namespace {

TEST_F(WriteParserFile, LongNamesReadBack) {
    for (const size_t length : {900u, 1000u, 1020u, 1022u, 1024u, 5000u}) {
        const std::string name(length, 'n');
        add(name).add_int(1);
        add(name + "\xFF").add_group(nullptr)->add_entry(name.c_str(), 0, 0)->add_int(2);
        ParserGroup& repeated = *add(name + "/r").add_group(nullptr);
        repeated.add_entry(name.c_str(), 0, 0)->add_string("x");
        repeated.add_entry(name.c_str(), 0, 0)->add_group(nullptr)->add_entry(name.c_str(), 0, 0);
    }
    expect_round_trip();
}

TEST_F(WriteParserFile, GroupsNestedTooDeepAreRefused) {
    ParserGroup* group = &file.get_root();
    for (int i = 1; i < 64; ++i)
        group = group->add_entry("g", 0, 0)->add_group(group);
    expect_round_trip();
    group->add_entry("g", 0, 0)->add_group(group);
    EXPECT_FALSE(file.write(folder.file("file.yaml").c_str()));
    EXPECT_THAT(file.get_error().get_data(), HasSubstr("file.yaml: groups nested deeper than 64 levels"));
}

TEST_F(WriteParserFile, TheDeepestGroupsInTheirLongestFormReadBack) {
    ParserGroup* group = &file.get_root();
    for (int i = 1; i < 64; ++i) {
        group->add_entry("g", 0, 0);
        ParserEntry& entry = *group->add_entry("g", 0, 0);
        entry.add_int(1);
        group = entry.add_group(group);
    }
    expect_round_trip();
}

TEST_F(WriteParserFile, MoreThanCanBeReadBackIsRefused) {
    ParserEntry& entry = add("long");
    const CoreString part(std::string_view(std::string(1 << 20, 'x')));
    for (int i = 0; i < 8; ++i)
        entry.add_string(part);
    EXPECT_FALSE(file.write(folder.file("file.yaml").c_str()));
    EXPECT_THAT(file.get_error().get_data(), HasSubstr("file.yaml: more than 8388608 bytes"));
    entry.reset();
    for (int i = 1; i < 500'000; ++i)
        entry.add_int(1);
    expect_round_trip();
    entry.add_int(1);
    EXPECT_FALSE(file.write(folder.file("file.yaml").c_str()));
    EXPECT_THAT(file.get_error().get_data(), HasSubstr("file.yaml: more than 500000 entries and values"));
}

TEST_F(WriteParserFile, TheLongestFileReadsBack) {
    const std::string around = "long: \"\"\n";
    ParserEntry& entry = add("long");
    entry.add_string(CoreString(std::string_view(std::string(8'388'608 - around.size(), 'x'))));
    EXPECT_EQ(write().size(), 8'388'608u);
    EXPECT_EQ(read_back().size(), describe(file.get_root()).size());
    entry.reset();
    entry.add_string(CoreString(std::string_view(std::string(8'388'609 - around.size(), 'x'))));
    EXPECT_FALSE(file.write(folder.file("file.yaml").c_str()));
}

TEST_F(WriteParserFile, AFailedWriteIsNamedAndLeavesTheOldFile) {
    EXPECT_FALSE(file.write(folder.file("no/file.yaml").c_str()));
    EXPECT_EQ(file.get_error(), CoreString(folder.file("no/file.yaml").c_str()) + ": no such folder");
    EXPECT_EQ(folder.count_entries(), 0u);
}

TEST_F(WriteParserFile, TenThousandEntriesReadBack) {
    for (int i = 0; i < 10'000; ++i) {
        ParserEntry& entry = add("space");
        entry.add_string(CoreString::from_int(i));
        entry.add_double(i * 0.1);
    }
    expect_round_trip();
}

} // namespace
