#include "colorio/color_io_auto_detection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/mapping_file_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MappingFile, GivesOneRowPerGroupInFileOrder) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(rows(), ElementsAre(Row{"Open EXR", "exr, sxr", "Tavelion|linear"},
                                    Row{"Scans", "dpx, cin", "Tavelion|Cineon"},
                                    Row{"default", "Other", "Tavelion|sRGB"}));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, AnswersLookUpsByExtension) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("CIN")), "Tavelion|Cineon");
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("hdr")), "Tavelion|sRGB");
    EXPECT_EQ(str(detection->get_extension_from_file_format("Scans")), "dpx,cin");
}

TEST_F(MappingFile, WithoutADefaultGroupGainsOneInTheApplicationsDefaultColorSpace) {
    app.default_color_space_name = "Tavelion|Cineon";
    point_application_at("Open EXR: {extensions: exr, color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(rows(), ElementsAre(Row{"Open EXR", "exr", "Tavelion|linear"},
                                    Row{"default", "Other", "Tavelion|Cineon"}));
}

TEST_F(MappingFile, OfNoGroupsIsATableOfTheDefaultRowAlone) {
    app.default_color_space_name = "Tavelion|linear";
    point_application_at("{}\n");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(rows(), ElementsAre(Row{"default", "Other", "Tavelion|linear"}));
}

TEST_F(MappingFile, KeepsItsDefaultRowLastWhereverItStands) {
    point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
default: {extensions: Other, color_space: Tavelion|sRGB}
B: {extensions: b, color_space: Tavelion|linear}
C: {extensions: c, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("A", "B", "C", "default"));
}

TEST_F(MappingFile, KeepsALeadingDefaultRowLast) {
    point_application_at(R"(
default: {extensions: Other, color_space: Tavelion|sRGB}
A: {extensions: a, color_space: Tavelion|linear}
B: {extensions: b, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("A", "B", "default"));
}

TEST_F(MappingFile, KnowsItsDefaultGroupByExactName) {
    point_application_at("Default: {extensions: Other, color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("Default", "default"));
}

TEST_F(MappingFile, PassesOverGroupsThatLackExtensionsOrColorSpace) {
    point_application_at(R"(
No space: {extensions: a}
No extensions: {color_space: Tavelion|linear}
Empty: {}
Other words: {Extensions: a, Color_space: Tavelion|linear}
Whole: {color_space: Tavelion|linear, extensions: w, note: "order does not matter"}
default: {extensions: Other, color_space: Tavelion|sRGB}
)");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(rows(),
                ElementsAre(Row{"Whole", "w", "Tavelion|linear"}, Row{"default", "Other", "Tavelion|sRGB"}));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, CountsAnIncompleteDefaultGroupAsSeen) {
    point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
default: {extensions: Other}
B: {extensions: b, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("B", "A")) << "no fall-back row, and later rows go before the last";
}

TEST_F(MappingFile, PutsASecondDefaultGroupInFrontOfTheFirst) {
    point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
default: {extensions: first, color_space: Tavelion|sRGB}
default: {extensions: second, color_space: Tavelion|Cineon}
)");
    detection->use_file_config(true);
    EXPECT_THAT(rows(),
                ElementsAre(Row{"A", "a", "Tavelion|linear"}, Row{"default", "second", "Tavelion|Cineon"},
                            Row{"default", "first", "Tavelion|sRGB"}));
}

TEST_F(MappingFile, DoesNotCountADefaultThatIsNoGroup) {
    app.default_color_space_name = "Tavelion|Cineon";
    point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
default: 3
B: {extensions: b, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_THAT(rows(), ElementsAre(Row{"A", "a", "Tavelion|linear"}, Row{"B", "b", "Tavelion|linear"},
                                    Row{"default", "Other", "Tavelion|Cineon"}));
}

TEST_F(MappingFile, PassesOverValuesThatAreNoGroups) {
    app.default_color_space_name = "Tavelion|linear";
    point_application_at(R"(
version: 3
name: "a mapping"
list: [1, 2]
A: {extensions: a, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(formats(), ElementsAre("A", "default"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, StopsAtAnEntryWithoutValueAndIsNotUsed) {
    std::string path = point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
Broken:
B: {extensions: b, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: color space mapping configuration file '" + path +
                            "' has an entry without value: 'Broken.\n"),
                    warning("Color Management: failed to load color space mapping configuration file '" +
                            path + "'. Defaulting to Tavelion built-in associations.\n")));
}

TEST_F(MappingFile, KeepsTheRowsReadBeforeAnEntryWithoutValue) {
    point_application_at("A: {extensions: a, color_space: Tavelion|linear}\nBroken:\n");
    detection->use_file_config(true);
    point_application_at("B: {extensions: b, color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("A", "B", "default"));
}

TEST_F(MappingFile, ThatCannotBeParsedIsReportedAndNotUsed) {
    std::string path = point_application_at("A: {extensions: [unclosed\n");
    log.set_level(LOG_INFO);
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_THAT(
        take_log(),
        ElementsAre(information("Color Management: " + path + ":2:1: end of sequence flow not found\n"),
                    warning("Color Management: color space mapping configuration file '" + path +
                            "' has errors and can't be read.\n"),
                    warning("Color Management: failed to load color space mapping configuration file '" +
                            path + "'. Defaulting to Tavelion built-in associations.\n")));
}

TEST_F(MappingFile, ThatDoesNotExistIsReportedOnceAndNotUsed) {
    std::string path = path_of("absent.yaml");
    want_mapping(path);
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_THAT(take_log(), ElementsAre(warning(
                                "Color Management: failed to load color space mapping configuration file '" +
                                path + "'. Defaulting to Tavelion built-in associations.\n")));
}

TEST_F(MappingFile, OfAnEmptyPathIsNotUsedAndNotMentioned) {
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(MappingFile, IsReadByBuildFromFileWithoutPuttingItInForce) {
    std::string path = write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT);
    EXPECT_TRUE(detection->build_from_file(path.c_str()));
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_FALSE(detection->build_from_file(""));
    EXPECT_FALSE(detection->build_from_file(path_of("absent.yaml").c_str()));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(MappingFile, IsNeverReadWithoutAnApplication) {
    std::string path = write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT);
    ColorIOAutoDetection headless(nullptr);
    EXPECT_FALSE(headless.build_from_file(path.c_str()));
    headless.use_file_config(true);
    EXPECT_FALSE(headless.is_file_config());
    headless.use_file_config(false);
    EXPECT_EQ(headless.get_categories_count(), 9u);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

} // namespace
