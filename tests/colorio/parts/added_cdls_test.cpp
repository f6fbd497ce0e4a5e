#include "colorio/cdl/added_cdls.h"

#include <limits>

#include <gtest/gtest.h>

#include "colorio/cdl/cdl_document.h"
#include "tests/support/temp_dir.h"

namespace {

using Def = AddedCDLs::Def;

Def record(const char* name, float saturation = 1, const std::string& file = "") {
    Def def = make_identity_CDL();
    def.name = name;
    def.file = file.c_str();
    def.saturation = saturation;
    return def;
}

TEST(AddedCDLs, HoldARecordUntilItsNameIsUsedOtherwise) {
    AddedCDLs added;
    EXPECT_FALSE(added.holds(record("a"), false));
    added.remember(record("a"), false);
    EXPECT_TRUE(added.holds(record("a"), false));
    EXPECT_FALSE(added.holds(record("a"), true)) << "made from its file instead";
    EXPECT_FALSE(added.holds(record("a", 0.5f), false));
    added.remember(record("A", 0.5f), false);
    EXPECT_FALSE(added.holds(record("a"), false)) << "OpenColorIO ignores case";
    EXPECT_TRUE(added.holds(record("A", 0.5f), false));
}

TEST(AddedCDLs, CompareNumbersBitForBit) {
    AddedCDLs added;
    added.remember(record("a", std::numeric_limits<float>::quiet_NaN()), false);
    EXPECT_TRUE(added.holds(record("a", std::numeric_limits<float>::quiet_NaN()), false));
    added.remember(record("a", 0.0f), false);
    EXPECT_FALSE(added.holds(record("a", -0.0f), false));
}

TEST(AddedCDLs, KnowACompleteListUntilAFileOfItComesOrGoes) {
    TempDir folder;
    AddedCDLs::List list;
    list.append(record("a", 1, folder.file("a.cc")));
    AddedCDLs added;
    added.remember(list[0], false);
    added.note_list(list);
    EXPECT_TRUE(added.is_complete(list));
    const AddedCDLs::List copy = list;
    EXPECT_FALSE(added.is_complete(copy)) << "identified by its address";
    folder.write("a.cc", "");
    EXPECT_FALSE(added.is_complete(list));
}

TEST(AddedCDLs, TakeNoListForCompleteThatWasNotAddedOrHidesABuiltInName) {
    AddedCDLs::List list;
    list.append(record("a"));
    AddedCDLs added;
    added.note_list(list);
    EXPECT_FALSE(added.is_complete(list)) << "'a' was not added";

    Def builtin = record("A");
    builtin.is_builtin = true;
    list.append(builtin);
    added.remember(list[0], false);
    added.note_list(list);
    EXPECT_FALSE(added.is_complete(list)) << "'A' hides 'a'";
}

TEST(AddedCDLs, FindTheListedRecordThatAnotherStandsInFor) {
    AddedCDLs::List list;
    list.append(record("a"));
    list.append(record("b"));
    AddedCDLs added;
    added.remember(list[0], false);
    added.remember(list[1], false);
    added.note_list(list);
    EXPECT_EQ(added.find_replaced(record("c")), nullptr);
    added.remember(record("B", 0.5f), false);
    EXPECT_TRUE(added.is_complete(list));
    EXPECT_EQ(added.find_replaced(record("b", 0.25f)), nullptr) << "replaces it itself";
    const Def* replaced = added.find_replaced(record("a"));
    ASSERT_NE(replaced, nullptr);
    EXPECT_EQ(replaced->name, "b");
    added.remember(list[1], false);
    EXPECT_EQ(added.find_replaced(record("a")), nullptr);
}

} // namespace
