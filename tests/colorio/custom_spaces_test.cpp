#include "colorio/color_io_manager.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"
#include "tests/colorio/shader_evaluator.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::FloatNear;
using testing::IsEmpty;
using testing::Not;

using SpaceDef = ColorIOManager::ColorSpaceDef;

/// The names of the records that the manager keeps.
std::vector<std::string> record_names() {
    std::vector<std::string> names;
    for (const SpaceDef& record : ColorIOManager::get_instance()->get_tavelion_color_spaces())
        names.push_back(str(record.name));
    return names;
}

class CustomSpaces : public ConverterTest {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }

    /// Hands the built-in records and these to the manager, as a host's editor does.
    void edit(const std::vector<SpaceDef>& custom) {
        CoreVector<SpaceDef> list;
        for (const SpaceDef& record : manager().get_tavelion_color_spaces())
            if (record.is_builtin)
                list.append(record);
        for (const SpaceDef& record : custom)
            list.append(record);
        manager().set_tavelion_config(list);
    }
    std::vector<std::string> spaces() { return strings(manager().get_color_space_names()); }
    std::vector<std::string> views() { return strings(manager().get_display_view_names()); }

    /// Red of the converted grey.
    float convert_grey(const char* source, const char* destination, float value) {
        EXPECT_TRUE(converter->configure(source, destination));
        return convert(value, value, value)[0];
    }
    std::string write_lut(const char* name, double factor) { return write_file(name, lut_text(factor)); }
};

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
    EXPECT_FLOAT_EQ(convert_grey("linear", "mine", 0.25f), 0.5f);
    EXPECT_FLOAT_EQ(convert_grey("mine", "linear", 0.5f), 0.25f);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CustomSpaces, OfALutInterpolateItLinearly) {
    const std::string lut =
        write_file("bent.spi1d",
                   "Version 1\nFrom 0 1\nLength 3\nComponents 1\n{\n        0\n        0.25\n        1\n}\n");
    edit({space_record("bent", lut)});
    EXPECT_FLOAT_EQ(convert_grey("linear", "bent", 0.25f), 0.125f);
    EXPECT_FLOAT_EQ(convert_grey("linear", "bent", 0.75f), 0.625f);
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
    EXPECT_FLOAT_EQ(convert_grey("linear", "grade", 0.25f), 0.625f);
    EXPECT_FLOAT_EQ(convert_grey("grade", "linear", 0.625f), 0.25f);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CustomSpaces, OfACdlAndALutApplyTheCdlFirst) {
    edit({space_record("both", write_lut("two.spi1d", 2),
                       write_file("lift.cc", correction_text("x", "1", "0.25")))});
    EXPECT_FLOAT_EQ(convert_grey("linear", "both", 0.25f), 1.0f);
    EXPECT_FLOAT_EQ(convert_grey("both", "linear", 1.0f), 0.25f);
}

TEST_F(CustomSpaces, WithOneMissingFileAreMadeOfTheOther) {
    const std::string lut = write_lut("two.spi1d", 2);
    const std::string grade = write_file("grade.cc", correction_text("x", "4"));
    edit({space_record("lut", lut, path_of("absent.cc")),
          space_record("cdl", path_of("absent.spi1d"), grade)});
    EXPECT_FLOAT_EQ(convert_grey("linear", "lut", 0.25f), 0.5f);
    EXPECT_FLOAT_EQ(convert_grey("linear", "cdl", 0.25f), 1.0f);
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
    EXPECT_FLOAT_EQ(convert_grey("linear", "one", 0.25f), 0.5f);
    EXPECT_FLOAT_EQ(convert_grey("linear", "two", 0.25f), 1.0f);
    EXPECT_FLOAT_EQ(convert_grey("linear", "with lut", 0.25f), 2.0f);
}

TEST_F(CustomSpaces, UseAnIdWithTheExtensionCccOnly) {
    const std::string collection =
        collection_text(correction_text("first", "2") + correction_text("second", "4"));
    edit({space_record("upper", "", write_file("grades.CCC", collection), "second"),
          space_record("single", "", write_file("grade.cc", correction_text("x", "8")), "second")});
    EXPECT_FLOAT_EQ(convert_grey("linear", "upper", 0.25f), 0.5f) << "the first one, whatever the id says";
    EXPECT_FLOAT_EQ(convert_grey("linear", "single", 0.25f), 2.0f);
}

// Failures

TEST_F(CustomSpaces, OfADamagedCdlAreReportedAndPassedOver) {
    const std::string damaged = write_file("damaged.cc", "<ColorCorrection><SOPNode>");
    const std::string lut = write_lut("two.spi1d", 2);
    edit({space_record("bad", "", damaged), space_record("good", lut)});
    EXPECT_THAT(take_log(),
                ElementsAre(error("Color Management: custom color space 'bad' has errors and was ignored.\n"),
                            OcioExceptionAt(LOG_ERROR)));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "good"));
    EXPECT_THAT(views(), Not(Contains("Tavelion.bad")));
}

TEST_F(CustomSpaces, OfADamagedCdlBesideALutAreReportedInOtherWords) {
    const std::string damaged = write_file("damaged.cc", "<ColorCorrection><SOPNode>");
    const std::string lut = write_lut("two.spi1d", 2);
    edit({space_record("bad", lut, damaged), space_record("good", lut)});
    EXPECT_THAT(
        take_log(),
        ElementsAre(error("Color Management: the custom color space 'bad' has errors and was ignored.\n"),
                    OcioExceptionAt(LOG_ERROR)));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "good"));
}

TEST_F(CustomSpaces, OfAnUnknownIdAreReported) {
    const std::string file = write_file("grades.ccc", collection_text(correction_text("first", "2")));
    edit({space_record("bad", "", file, "no such id")});
    EXPECT_THAT(take_log(),
                ElementsAre(error("Color Management: custom color space 'bad' has errors and was ignored.\n"),
                            OcioExceptionAt(LOG_ERROR)));
}

TEST_F(CustomSpaces, OfADamagedCdlAreReadAgainOnceItIsMended) {
    const std::string file = write_file("grade.cc", "<ColorCorrection><SOPNode>");
    edit({space_record("grade", "", file)});
    write_file("grade.cc", correction_text("x", "2"));
    take_log();
    edit({space_record("grade", "", file)});
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_FLOAT_EQ(convert_grey("linear", "grade", 0.25f), 0.5f);
}

TEST_F(CustomSpaces, OfADamagedLutAreMadeAndFailWhenTheyAreConverted) {
    edit({space_record("bad", write_file("bad.spi1d", "no table"))});
    EXPECT_THAT(spaces(), Contains("bad"));
    take_log();
    EXPECT_FALSE(converter->configure("linear", "bad"));
    EXPECT_THAT(
        take_log(),
        ElementsAre(error("Color Management: failed to configure the color converter from 'linear' to "
                          "'bad'.\n"),
                    OcioExceptionAt(LOG_ERROR)));
}

TEST_F(CustomSpaces, OfNamesThatTheColourLibraryMightRefuseLeaveTheOthersAlone) {
    const std::string lut = write_lut("two.spi1d", 2);
    edit({space_record("", lut), space_record("50% grey", lut), space_record("good", lut)});
    EXPECT_THAT(spaces(), Contains("good"));
    EXPECT_FLOAT_EQ(convert_grey("linear", "good", 0.25f), 0.5f);
}

TEST_F(CustomSpaces, OfNumbersThatNoDepthOrAllocationHasLeaveTheOthersAlone) {
    const std::string lut = write_lut("two.spi1d", 2);
    SpaceDef odd = space_record("odd", lut);
    odd.bit_depth = 0xFFFFFFFFu;
    odd.allocation = 77;
    edit({odd, space_record("good", lut)});
    EXPECT_THAT(spaces(), Contains("good"));
    EXPECT_FLOAT_EQ(convert_grey("linear", "good", 0.25f), 0.5f);
}

// Names

TEST_F(CustomSpaces, OfOneNameReplaceEachOther) {
    edit({space_record("mine", write_lut("two.spi1d", 2)), space_record("mine", write_lut("four.spi1d", 4))});
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear", "Tavelion.mine"));
    EXPECT_FLOAT_EQ(convert_grey("linear", "mine", 0.25f), 1.0f);
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

// Allocation, as the shader's table shows it: entry i of its first row is the space's value at i / 31, halved

class AllocationOfCustomSpaces : public CustomSpaces {
protected:
    void expect_axis(const SpaceDef& record, double (*value_at)(double position)) {
        edit({record});
        ASSERT_TRUE(converter->configure("mine", "linear"));
        CoreString code;
        CoreArray<float> table;
        ASSERT_TRUE(converter->get_gpu_shader_data(code, table, ColorIOConverter::GLSL_VERSION_CORE));
        for (unsigned int i = 0; i < 32; ++i)
            EXPECT_NEAR(table[i * 3], value_at(i / 31.0) / 2, 2e-5) << i;
    }
    SpaceDef record(ocio::Allocation allocation, float first, float second, float third) {
        SpaceDef record = space_record("mine", write_lut("two.spi1d", 2));
        record.allocation = static_cast<unsigned int>(allocation);
        record.allocation_vars[0] = first;
        record.allocation_vars[1] = second;
        record.allocation_vars[2] = third;
        return record;
    }
};

TEST_F(AllocationOfCustomSpaces, IsUniformBetweenTheFirstTwoVariables) {
    expect_axis(record(ocio::ALLOCATION_UNIFORM, -1, 3, 17),
                [](double position) { return -1 + 4 * position; });
}

TEST_F(AllocationOfCustomSpaces, IsLogarithmicWithTheThirdVariableAsOffset) {
    expect_axis(record(ocio::ALLOCATION_LG2, -8, 4, 0.25),
                [](double position) { return std::exp2(-8 + 12 * position) - 0.25; });
}

TEST_F(AllocationOfCustomSpaces, OfACdlAloneIsFixed) {
    SpaceDef grade = space_record("mine", "", write_file("grade.cc", correction_text("x", "2")));
    SpaceDef target = space_record("target", write_lut("half.spi1d", 0.5));
    edit({grade, target});
    ASSERT_TRUE(converter->configure("mine", "target"));
    CoreString code;
    CoreArray<float> table;
    ASSERT_TRUE(converter->get_gpu_shader_data(code, table, ColorIOConverter::GLSL_VERSION_CORE));
    ASSERT_NE(str(code).find("log"), std::string::npos) << "logarithmic, whatever the record says\n"
                                                        << str(code);
    const float largest = std::max(table[31 * 3], table[30 * 3]);
    EXPECT_NEAR(largest, 16, 1e-3) << "2^6, halved by the correction and by the table";
    EXPECT_NEAR(table[0], std::exp2(-15) / 4, 1e-6);
}

TEST_F(CustomSpaces, OfACdlAndALutAreShownByTheShaderAsTheyAreConverted) {
    const std::string grade = write_file(
        "grade.cc",
        "<ColorCorrection id=\"x\"><SOPNode><Slope>0.8 1 1.2</Slope><Offset>0.1 0 -0.1</Offset>"
        "<Power>1 1 1</Power></SOPNode><SATNode><Saturation>0.5</Saturation></SATNode></ColorCorrection>");
    edit({space_record("flat", write_lut("one.spi1d", 1)),
          space_record("both", write_lut("two.spi1d", 2), grade)});
    ASSERT_TRUE(converter->configure("flat", "both"));
    for (auto version : {ColorIOConverter::GLSL_VERSION_LEGACY, ColorIOConverter::GLSL_VERSION_CORE}) {
        CoreString code;
        CoreArray<float> table;
        ASSERT_TRUE(converter->get_gpu_shader_data(code, table, version));
        ShaderEvaluator shader(str(code), "OCIODisplay", {table.begin(), table.end()}, 32);
        for (const ShaderEvaluator::Pixel& pixel :
             {ShaderEvaluator::Pixel{0.18, 0.5, 0.75, 1}, {0.9, 0.1, 0.3, 0.5}, {0, 0, 0, 1}, {1, 1, 1, 0}}) {
            const std::vector<float> converted = convert(
                static_cast<float>(pixel[0]), static_cast<float>(pixel[1]), static_cast<float>(pixel[2]));
            const ShaderEvaluator::Pixel shown = shader.run(pixel);
            // Every step is a straight line, so the lattice adds no error of its own.
            for (unsigned int i = 0; i < 3; ++i)
                EXPECT_NEAR(shown[i], converted[i], 2e-4) << "channel " << i << "\n" << str(code);
        }
    }
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

// Which configuration is active afterwards

TEST_F(CustomSpaces, MakeTheBuiltInConfigurationActiveWhenNoFileIsWanted) {
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_TRUE(manager().is_using_tavelion_config());
}

TEST_F(CustomSpaces, MakeTheBuiltInConfigurationActiveWhenAFileIsWantedButNoneNamed) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    ASSERT_FALSE(manager().is_using_tavelion_config());
    app.color_space_file_path = "";
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), Contains("mine"));
}

TEST_F(CustomSpaces, LeaveTheConfigurationOfAFileActive) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    take_events();
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
    EXPECT_THAT(views(), ElementsAre("Monitor.Film", "Monitor.Video.v2", "Cinema.Film"));
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT));

    use_builtin_config();
    EXPECT_THAT(spaces(), Contains("mine"));
    EXPECT_THAT(views(), Contains("Tavelion.mine"));
}

TEST_F(CustomSpaces, GetTheirViewThoughTheConfigurationOfAFileHasOneOfThatName) {
    use_config(config_text({{"", "lin"}}, {{"Tavelion", "mine", "lin"}}, {{"scene_linear", "lin"}}));
    ASSERT_THAT(views(), ElementsAre("Tavelion.mine"));
    take_log();
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_THAT(
        take_log(),
        Not(Contains(warning("Color Management: duplicate display view 'Tavelion.mine' was ignored.\n"))));
    use_builtin_config();
    EXPECT_THAT(views(), Contains("Tavelion.mine"));
}

TEST_F(CustomSpaces, AppearInTheBuiltInConfigurationThatStandsInForAWantedFile) {
    want_file(path_of("absent.ocio"));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    ASSERT_TRUE(manager().is_using_tavelion_config());
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    EXPECT_THAT(views(), ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear", "Tavelion.mine"));
}

TEST_F(CustomSpaces, LeaveTheConfigurationOfTheEnvironmentActive) {
    EnvGuard variable("OCIO", write_file("environment.ocio", CONFIG_WITHOUT_FAMILIES));
    app.use_color_space_file = true;
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    ASSERT_FALSE(manager().is_using_tavelion_config());
    edit({space_record("mine", write_lut("two.spi1d", 2))});
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
}

} // namespace
