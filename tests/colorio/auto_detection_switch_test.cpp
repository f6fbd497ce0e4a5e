#include "colorio/color_io_auto_detection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "tests/colorio/mapping_file_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The switch

TEST_F(MappingFile, PutInForceRaisesOneEvent) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
}

TEST_F(MappingFile, PutOutOfForceRaisesOneEventAndBringsTheBuiltInRowsBack) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    take_events();
    detection->use_file_config(false);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
}

TEST_F(MappingFile, SwitchedOffTwiceRaisesTheEventTwice) {
    detection->use_file_config(false);
    detection->use_file_config(false);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT, EXTENSION_EVENT));
}

TEST_F(MappingFile, ThatCannotBeUsedRaisesNoEventAndChecksNothing) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    take_log();
    take_events();
    want_mapping(path_of("absent.yaml"));
    detection->use_file_config(true);
    EXPECT_THAT(take_events(), IsEmpty());
    EXPECT_EQ(take_log().size(), 1u) << "only the file is reported, not the color spaces the rows lack";
}

TEST_F(MappingFile, OnceReadStaysInUseWhenThePathIsEmptied) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    detection->use_file_config(false);
    want_mapping("");
    take_events();
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Scans", "default"));
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
}

TEST_F(MappingFile, ReadAgainAppendsItsRowsToTheEarlierOnes) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    point_application_at("New: {extensions: \"new, dpx\", color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Scans", "default", "New", "default"));
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("dpx")), "Tavelion|Cineon");
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("new")), "Tavelion|linear");
}

TEST_F(MappingFile, ThatTurnsUnreadableGivesWayToTheBuiltInRows) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    want_mapping(path_of("absent.yaml"));
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
}

TEST_F(MappingFile, ThatTurnedUnreadableIsNotBroughtBackByAnEmptiedPath) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    want_mapping(path_of("absent.yaml"));
    detection->use_file_config(true);
    take_log();
    take_events();
    want_mapping("");
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(MappingFile, LeavesEditsToTheBuiltInTable) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    detection->add_file_format("Added", "add", "Tavelion|linear");
    detection->set_file_format(0, "Renamed");
    detection->set_extension_from_file_format(1, "pic");
    detection->set_default_color_space_from_file_format(2, "linear");
    detection->remove_file_format(3);
    EXPECT_THAT(rows(), ElementsAre(Row{"Open EXR", "exr, sxr", "Tavelion|linear"},
                                    Row{"Scans", "dpx, cin", "Tavelion|Cineon"},
                                    Row{"default", "Other", "Tavelion|sRGB"}));

    detection->use_file_config(false);
    EXPECT_THAT(formats(),
                ElementsAre("Renamed", "Jpeg", "Bitmap", "Png", "Tiff", "Tx", "HDR", "Added", "default"));
    EXPECT_EQ(str(detection->get_extension_from_file_format("Jpeg")), "pic");
    EXPECT_EQ(str(detection->get_default_color_space_from_file_format("Bitmap")), "Tavelion|linear");
}

TEST_F(MappingFile, MakesTheFacadeWhenItHasToRaiseItsEvent) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    forget_facade();
    detection->use_file_config(true);
    EXPECT_NE(ColorIO::s_singleton, nullptr);
}

TEST_F(MappingFile, FollowsTheApplicationsPath) {
    change_mapping(1, write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT));
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Scans", "default"));
}

TEST_F(MappingFile, IsPutOutOfForceWhenThePathChangesWhileTheApplicationWantsNone) {
    change_mapping(1, write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT));
    change_mapping(0, write_file("other.yaml", TWO_FORMATS_AND_DEFAULT));
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
}

TEST_F(MappingFile, IsWantedForAnyFlagButZero) {
    change_mapping(0x80000000u, write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT));
    EXPECT_TRUE(detection->is_file_config());
}

// Validation

TEST_F(MappingFile, WithKnownColorSpacesPassesTheCheckInSilence) {
    EXPECT_TRUE(detection->check_mappings());
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_TRUE(detection->check_mappings());
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, OfOneUnknownColorSpaceInThreeRowsNamesItOnce) {
    point_application_at(R"(
A: {extensions: a, color_space: Film|log}
B: {extensions: b, color_space: Film|log}
C: {extensions: c, color_space: Film|log}
default: {extensions: Other, color_space: Tavelion|sRGB}
)");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config()) << "an unknown color space is reported, and used";
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: found 1 unknown color space(s) assigned to 3 file format "
                            "/ color space mapping(s):\n"),
                    warning("'Film|log'\n"),
                    warning("Please update the file format / color space mappings or set an OCIO "
                            "configuration that defines the missing color spaces and restart "
                            "Tavelion.\n")));
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
    EXPECT_FALSE(detection->check_mappings());
}

TEST_F(MappingFile, NamesUnknownColorSpacesInTheOrderOfTheirRows) {
    point_application_at(R"(
A: {extensions: a, color_space: zeta}
B: {extensions: b, color_space: alpha}
C: {extensions: c, color_space: zeta}
D: {extensions: d, color_space: Tavelion|linear}
E: {extensions: e, color_space: linear}
default: {extensions: Other, color_space: ""}
)");
    detection->use_file_config(true);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: found 4 unknown color space(s) assigned to 5 file format "
                            "/ color space mapping(s):\n"),
                    warning("'zeta'\n"), warning("'alpha'\n"), warning("'linear'\n"), warning("''\n"),
                    warning("Please update the file format / color space mappings or set an OCIO "
                            "configuration that defines the missing color spaces and restart "
                            "Tavelion.\n")));
}

TEST_F(MappingFile, IsCheckedAgainstEveryNewConfiguration) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: found 2 unknown color space(s) assigned to 9 file format "
                            "/ color space mapping(s):\n"),
                    warning("'Tavelion|linear'\n"), warning("'Tavelion|sRGB'\n"),
                    warning("Please update the file format / color space mappings or set an OCIO "
                            "configuration that defines the missing color spaces and restart "
                            "Tavelion.\n")));
    EXPECT_FALSE(detection->check_mappings());
    take_log();
    use_builtin_config();
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_TRUE(detection->check_mappings());
}

TEST_F(MappingFile, PutOutOfForceHasTheBuiltInRowsCheckedBeforeItsEvent) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    take_log();
    std::vector<LogLine> lines_at_event;
    EventRecorder listener;
    listener.on_event = [&](const std::string& event) {
        EXPECT_EQ(event, EXTENSION_EVENT);
        lines_at_event = log.get_lines();
    };
    detection->use_file_config(false);
    EXPECT_THAT(
        lines_at_event,
        ElementsAre(warning("Color Management: found 2 unknown color space(s) assigned to 9 file format "
                            "/ color space mapping(s):\n"),
                    warning("'Tavelion|linear'\n"), warning("'Tavelion|sRGB'\n"),
                    warning("Please update the file format / color space mappings or set an OCIO "
                            "configuration that defines the missing color spaces and restart "
                            "Tavelion.\n")));
    EXPECT_EQ(take_log().size(), 4u) << "nothing is logged afterwards";
}

TEST_F(MappingFile, FailsTheCheckInSilenceWhenNobodyWantsWarnings) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    take_log();
    log.set_level(LOG_ERROR);
    EXPECT_FALSE(detection->check_mappings());
    EXPECT_THAT(take_log(), IsEmpty());
}

// Life

TEST_F(MappingFile, DetectorIsMadeOnceAndDestroyedByItself) {
    EXPECT_EQ(ColorIOAutoDetection::s_instance, detection);
    detection->add_file_format("Kept", "k", "Tavelion|linear");
    EXPECT_TRUE(ColorIOAutoDetection::static_init(&app));
    EXPECT_EQ(ColorIOAutoDetection::get_instance(), detection);
    EXPECT_EQ(detection->get_categories_count(), 10u);

    ColorIOAutoDetection::destroy();
    EXPECT_EQ(ColorIOAutoDetection::get_instance(), nullptr);
    EXPECT_EQ(ColorIOAutoDetection::s_instance, nullptr);
    ColorIOAutoDetection::destroy();

    EXPECT_TRUE(ColorIOAutoDetection::static_init(nullptr));
    ASSERT_NE(ColorIOAutoDetection::get_instance(), nullptr);
    EXPECT_EQ(ColorIOAutoDetection::get_instance()->get_categories_count(), 9u);
}

TEST_F(MappingFile, DetectorOutlivesTheManager) {
    ColorIO::destroy();
    ASSERT_EQ(ColorIOAutoDetection::get_instance(), detection);
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("exr")), "Tavelion|linear");
}

} // namespace
