#include "colorio/color_io_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/of/of_enum.h"
#include "tests/colorio/custom_space_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(CustomSpaces, AreNoneAtTheStart) {
    EXPECT_THAT(record_names(), ElementsAre("sRGB", "Cineon", "linear"));
    for (const SpaceDef& record : manager().get_tavelion_color_spaces())
        EXPECT_TRUE(record.is_builtin);
}

// Kinds

TEST_F(CustomSpaces, OfALutApplyItFromLinear) {
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    EXPECT_THAT(labels(app.get_enum("color_space")),
                ElementsAre("Tavelion|sRGB", "Tavelion|Cineon", "Tavelion|linear", "Tavelion|mine"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear", "Tavelion.mine"));
    EXPECT_FLOAT_EQ(convert_gray("linear", "mine", 0.25f), 0.5f);
    EXPECT_FLOAT_EQ(convert_gray("mine", "linear", 0.5f), 0.25f);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CustomSpaces, OfALutInterpolateItLinearly) {
    const std::string lut =
        write_file("bent.spi1d",
                   "Version 1\nFrom 0 1\nLength 3\nComponents 1\n{\n        0\n        0.25\n        1\n}\n");
    edit({space_record("bent", lut)});
    EXPECT_FLOAT_EQ(convert_gray("linear", "bent", 0.25f), 0.125f);
    EXPECT_FLOAT_EQ(convert_gray("linear", "bent", 0.75f), 0.625f);
}

TEST_F(CustomSpaces, OfALutGetAViewThatShowsThem) {
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_EQ(str(manager().get_color_space_from_display_view("Tavelion.mine")), "Tavelion|mine");
    ASSERT_TRUE(converter->configure_for_display("linear", "Tavelion.mine"));
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 1)[0], 0.5f);
}

TEST_F(CustomSpaces, OfACdlApplyItFromLinear) {
    edit({space_record("grade", "", write_file("grade.cc", correction_text("x", "2", "0.125")))});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "grade"));
    EXPECT_FLOAT_EQ(convert_gray("linear", "grade", 0.25f), 0.625f);
    EXPECT_FLOAT_EQ(convert_gray("grade", "linear", 0.625f), 0.25f);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CustomSpaces, OfADecisionListApplyItsFirstDecision) {
    const std::string file = write_file(
        "shots.cdl", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<ColorDecisionList xmlns=\"urn:ASC:CDL:v1.2\"><ColorDecision>" +
                         correction_text("first", "2") + "</ColorDecision><ColorDecision>" +
                         correction_text("second", "4") + "</ColorDecision></ColorDecisionList>\n");
    edit({space_record("shot", "", file, "second")});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "shot"));
    EXPECT_FLOAT_EQ(convert_gray("linear", "shot", 0.25f), 0.5f) << "the id counts in collections only";
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CustomSpaces, OfACdlAndALutApplyTheCdlFirst) {
    edit({space_record("both", write_lut("two.spi1d", 2),
                       write_file("lift.cc", correction_text("x", "1", "0.25")))});
    EXPECT_FLOAT_EQ(convert_gray("linear", "both", 0.25f), 1.0f);
    EXPECT_FLOAT_EQ(convert_gray("both", "linear", 1.0f), 0.25f);
}

TEST_F(CustomSpaces, WithOneMissingFileAreMadeOfTheOther) {
    const std::string lut = write_lut("two.spi1d", 2);
    const std::string grade = write_file("grade.cc", correction_text("x", "4"));
    edit({space_record("lut", lut, path_of("absent.cc")),
          space_record("cdl", path_of("absent.spi1d"), grade)});
    EXPECT_FLOAT_EQ(convert_gray("linear", "lut", 0.25f), 0.5f);
    EXPECT_FLOAT_EQ(convert_gray("linear", "cdl", 0.25f), 1.0f);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CustomSpaces, WithoutAnyFileAreKeptButNotMade) {
    edit({space_record("nothing", ""), space_record("lost", path_of("absent.spi1d"), path_of("absent.cc")),
          space_record("lost lut", path_of("absent.spi1d")),
          space_record("lost cdl", "", path_of("absent.cc"))});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_THAT(record_names(),
                ElementsAre("sRGB", "Cineon", "linear", "nothing", "lost", "lost lut", "lost cdl"));
    EXPECT_THAT(take_log(), IsEmpty());
}

// Corrections of a collection

TEST_F(CustomSpaces, PickTheCorrectionOfACollectionByItsId) {
    const std::string file = write_file(
        "grades.ccc", collection_text(correction_text("first", "2") + correction_text("second", "4")));
    edit({space_record("one", "", file, "first"), space_record("two", "", file, "second"),
          space_record("with lut", write_lut("two.spi1d", 2), file, "second")});
    EXPECT_FLOAT_EQ(convert_gray("linear", "one", 0.25f), 0.5f);
    EXPECT_FLOAT_EQ(convert_gray("linear", "two", 0.25f), 1.0f);
    EXPECT_FLOAT_EQ(convert_gray("linear", "with lut", 0.25f), 2.0f);
}

TEST_F(CustomSpaces, UseAnIdWithTheExtensionCccOnly) {
    const std::string collection =
        collection_text(correction_text("first", "2") + correction_text("second", "4"));
    edit({space_record("upper", "", write_file("grades.CCC", collection), "second"),
          space_record("single", "", write_file("grade.cc", correction_text("x", "8")), "second")});
    EXPECT_FLOAT_EQ(convert_gray("linear", "upper", 0.25f), 0.5f) << "the first one, for every id";
    EXPECT_FLOAT_EQ(convert_gray("linear", "single", 0.25f), 2.0f);
}

// Names

TEST_F(CustomSpaces, OfOneNameReplaceEachOther) {
    edit({space_record("mine", write_lut("two.spi1d", 2)), space_record("mine", write_lut("four.spi1d", 4))});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear", "Tavelion.mine"));
    EXPECT_FLOAT_EQ(convert_gray("linear", "mine", 0.25f), 1.0f);
    EXPECT_THAT(record_names(), ElementsAre("sRGB", "Cineon", "linear", "mine", "mine"));
    EXPECT_THAT(take_log(), IsEmpty()) << "no view is published while the list is replaced";
}

TEST_F(CustomSpaces, MayHoldFullStopsInTheirNames) {
    edit({space_record("film.v2", write_lut("two.spi1d", 2))});
    EXPECT_THAT(views(), Contains("Tavelion.film.v2"));
    CoreString display, view;
    EXPECT_TRUE(manager().get_display_view("Tavelion.film.v2", display, view));
    EXPECT_EQ(str(view), "film.v2");
    ASSERT_TRUE(converter->configure_for_display("linear", "Tavelion.film.v2"));
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 1)[0], 0.5f);
}

// Replacing the list

TEST_F(CustomSpaces, ReplaceTheEarlierOnes) {
    edit({space_record("one", write_lut("two.spi1d", 2)), space_record("two", write_lut("two.spi1d", 2))});
    edit({space_record("three", write_lut("two.spi1d", 2))});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "three"));
    EXPECT_THAT(views(),
                ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear", "Tavelion.three"));
    edit({});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CustomSpaces, AreKeptExactlyAsGiven) {
    SpaceDef mine = space_record("mine", write_lut("two.spi1d", 2), path_of("absent.cc"), "id");
    mine.allocation_vars[2] = 0.1f;
    edit({mine});
    ASSERT_EQ(manager().get_tavelion_color_spaces().get_count(), 4u);
    const SpaceDef& kept = manager().get_tavelion_color_spaces()[3];
    EXPECT_EQ(str(kept.name), "mine");
    EXPECT_EQ(str(kept.lut_file), path_of("two.spi1d"));
    EXPECT_EQ(str(kept.cdl_file), path_of("absent.cc"));
    EXPECT_EQ(str(kept.cccid), "id");
    EXPECT_EQ(kept.bit_depth, static_cast<unsigned int>(ocio::BIT_DEPTH_F32));
    EXPECT_EQ(kept.allocation, static_cast<unsigned int>(ocio::ALLOCATION_UNIFORM));
    EXPECT_EQ(kept.allocation_vars[0], -1);
    EXPECT_EQ(kept.allocation_vars[1], 3);
    EXPECT_EQ(kept.allocation_vars[2], 0.1f);
    EXPECT_FALSE(kept.is_builtin);
}

TEST_F(CustomSpaces, HandedBackAloneTakeTheBuiltInRecordsButNotTheBuiltInSpacesAway) {
    CoreVector<SpaceDef> list;
    list.append(space_record("mine", write_lut("two.spi1d", 2)));
    manager().set_tavelion_config(list);
    EXPECT_THAT(record_names(), ElementsAre("mine"));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
}

TEST_F(CustomSpaces, MarkedBuiltInAreKeptButNotMade) {
    SpaceDef marked = space_record("marked", write_lut("two.spi1d", 2));
    marked.is_builtin = true;
    edit({marked});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_THAT(record_names(), Contains("marked"));
}

TEST_F(CustomSpaces, SetTellListenersOnce) {
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));
}

TEST_F(CustomSpaces, KeepConvertersOfReplacedSpacesWorking) {
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    ASSERT_TRUE(converter->configure("linear", "mine"));
    edit({});
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 1)[0], 0.5f);
}

TEST_F(CustomSpaces, MayHaveFilesBelowFoldersNamedLikeVariables) {
    EnvGuard variable("QB_TEST_X", "elsewhere");
    for (const char* name : {"c$QB_TEST_X", "c${QB_TEST_X}", "%QB_TEST_X%", "c$"}) {
        const std::string lut = std::string(name) + "/gain.spi1d";
        edit({space_record("mine", write_lut(lut.c_str(), 2))});
        EXPECT_TRUE(is_near(convert_gray("linear", "mine", 0.5f), 1.0)) << name;
        const std::string grade = write_file(std::string(name) + "/grade.cc", correction_text("x", "3"));
        edit({space_record("mine", "", grade)});
        EXPECT_TRUE(is_near(convert_gray("linear", "mine", 0.5f), 1.5)) << name;
    }
}

} // namespace
