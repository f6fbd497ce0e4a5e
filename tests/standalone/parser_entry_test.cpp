#include "host/parser/parser_entry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "host/parser/parser_group.h"

namespace {

TEST(ParserEntry, ValuesKeepTheirKindsAndOrder) {
    ParserEntry entry("space");
    entry.add_string("name");
    entry.add_int(-7);
    entry.add_double(0.5);
    ParserGroup* const group = entry.add_group(nullptr);
    EXPECT_EQ(entry.get_name(), "space");
    ASSERT_EQ(entry.get_value_count(), 4u);
    EXPECT_TRUE(entry.is_value_string(0) && entry.is_value_int(1) && entry.is_value_double(2));
    EXPECT_TRUE(entry.is_value_group(3));
    EXPECT_FALSE(entry.is_group());
    EXPECT_FALSE(entry.is_value_string(1) || entry.is_value_int(2) || entry.is_value_double(1));
    EXPECT_EQ(entry.get_group(3), group);
}

TEST(ParserEntry, IntegersConvertToDoublesAndNumbersToStrings) {
    ParserEntry entry("numbers");
    entry.add_int(-7);
    entry.add_double(0.1);
    EXPECT_EQ(entry.get_double(0), -7.0);
    EXPECT_EQ(entry.get_string(0), "-7");
    EXPECT_EQ(entry.get_string(1), "0.1");
    EXPECT_EQ(entry.get_int(1), 0) << "a double converts to no integer";
}

TEST(ParserEntry, OtherKindsAndPositionsPastTheEndAreNeutral) {
    ParserEntry entry("texts");
    entry.add_string("12");
    entry.add_group(nullptr);
    EXPECT_EQ(entry.get_int(0), 0);
    EXPECT_EQ(entry.get_double(0), 0.0);
    EXPECT_EQ(entry.get_group(0), nullptr);
    EXPECT_EQ(entry.get_string(1), "");
    EXPECT_EQ(entry.get_string(2), "");
    EXPECT_EQ(entry.get_int(2), 0);
    EXPECT_EQ(entry.get_double(2), 0.0);
    EXPECT_EQ(entry.get_group(2), nullptr);
    EXPECT_FALSE(entry.is_value_string(2) || entry.is_value_group(2));
}

TEST(ParserEntry, ResetDropsEveryValue) {
    ParserEntry entry("color_management");
    entry.add_group(nullptr)->add_entry("space", 0, 0);
    ASSERT_TRUE(entry.is_group());
    entry.reset();
    EXPECT_EQ(entry.get_value_count(), 0u);
    EXPECT_FALSE(entry.is_group());
    EXPECT_EQ(entry.get_name(), "color_management");
}

TEST(ParserGroup, EntriesOfOneNameAreAllKept) {
    ParserGroup parent(nullptr);
    ParserEntry* const outer = parent.add_entry("outer", 0, 0);
    ParserGroup& group = *outer->add_group(&parent);
    ParserEntry* const first = group.add_entry("CDL", 3, 5);
    ParserEntry* const second = group.add_entry("CDL", 0, 0);
    EXPECT_EQ(group.get_parent(), &parent);
    EXPECT_EQ(group.get_entry_count(), 2u);
    EXPECT_EQ(group.get_entry(0), first);
    EXPECT_EQ(group.get_entry(1), second);
    EXPECT_EQ(group.get_entry(2), nullptr);
    EXPECT_EQ(group.find_entry("CDL"), first);
    EXPECT_EQ(group.find_entry("cdl"), nullptr);
    EXPECT_EQ(first->get_line(), 3u);
    EXPECT_EQ(second->get_line(), 0u);
}

} // namespace
