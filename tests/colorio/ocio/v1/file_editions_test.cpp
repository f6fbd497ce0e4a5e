#include "colorio/ocio/v1/file_editions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <set>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using testing::EndsWith;
using testing::StartsWith;

TEST(FileEditions, EveryOneHasASpellingOfItsOwn) {
    std::set<std::string> spellings;
    for (unsigned edition = 0; edition < 2000; ++edition)
        spellings.insert(ocio::spell_edition("luts/film.spi1d", edition));
    EXPECT_EQ(spellings.size(), 2000u);
    for (const std::string& spelling : spellings) {
        EXPECT_THAT(spelling, StartsWith("luts/"));
        EXPECT_THAT(spelling, EndsWith("film.spi1d"));
        EXPECT_LT(spelling.size(), 50u);
    }
}

TEST(FileEditions, TheFirstIsSpelledAsItStands) {
    EXPECT_EQ(ocio::spell_edition("/luts/film.spi1d", 0), "/luts/film.spi1d");
    EXPECT_EQ(ocio::spell_edition("film.spi1d", 2), "././/film.spi1d");
}

/// A table that multiplies by `gain` between 0 and 1.
std::string table(const std::string& gain) {
    return "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n" + gain + "\n}\n";
}

constexpr const char* FILE_TRANSFORM =
    "!<FileTransform> {src: $QB_TEST_FOLDER/film.spi1d, interpolation: linear}";

/// Files that are edited between two conversions of one process.
class EditedFiles : public testing::Test {
protected:
    void load(test_configs::ConfigText text) {
        text.settings = "search_path: luts:.\nenvironment: {QB_TEST_FOLDER: luts}\n" + text.settings;
        config_ = test_configs::load(folder_, text.str());
    }
    void load_space(const std::string& transform) {
        test_configs::ConfigText text;
        text.spaces = "  - !<ColorSpace>\n    name: x\n    to_reference: " + transform + "\n";
        load(text);
    }
    void edit(const std::string& gain) {
        folder_.write("luts/film.spi1d", table(gain));
        ocio::clear_all_caches();
    }
    float half(const char* source = "x", const char* destination = "lin") const {
        std::array<float, 4> pixel{0.5f, 0.5f, 0.5f, 1};
        ocio::get_processor(config_, source, destination)->apply_rgba(pixel.data());
        return pixel[0];
    }

    TempDir folder_;
    ocio::ConstConfigRcPtr config_;
};

TEST_F(EditedFiles, AreReadAgainEveryTime) {
    load_space("!<FileTransform> {src: film.spi1d, interpolation: linear}");
    for (const char* gain : {"0.5", "0.25", "0.75", "0.125"}) {
        edit(gain);
        EXPECT_FLOAT_EQ(half(), 0.5f * std::stof(gain));
    }
}

TEST_F(EditedFiles, AreReadAgainByAbsolutePath) {
    load_space("!<FileTransform> {src: " + folder_.file("luts/film.spi1d") + ", interpolation: linear}");
    edit("0.5");
    EXPECT_FLOAT_EQ(half(), 0.25f);
    edit("0.25");
    EXPECT_FLOAT_EQ(half(), 0.125f);
}

TEST_F(EditedFiles, AreReadAgainInGroupsAndThroughVariables) {
    load_space("!<GroupTransform>\n      children:\n        - " + std::string(FILE_TRANSFORM) +
               "\n        - !<GroupTransform>\n          children:\n            - " + FILE_TRANSFORM);
    edit("0.5");
    EXPECT_FLOAT_EQ(half(), 0.125f);
    edit("0.25");
    EXPECT_FLOAT_EQ(half(), 0.03125f);
}

TEST_F(EditedFiles, AreReadAgainInLooks) {
    test_configs::ConfigText text;
    text.settings =
        "looks:\n  - !<Look> {name: film, process_space: lin, transform: " + std::string(FILE_TRANSFORM) +
        "}\n";
    text.spaces = "  - !<ColorSpace>\n    name: x\n"
                  "    to_reference: !<LookTransform> {src: lin, dst: lin, looks: film}\n";
    load(text);
    edit("0.5");
    EXPECT_FLOAT_EQ(half(), 0.25f);
    edit("0.25");
    EXPECT_FLOAT_EQ(half(), 0.125f);
}

TEST_F(EditedFiles, AreReadAgainWhereTheConversionItselfNamesThem) {
    load({});
    const ocio::FileTransformRcPtr file = ocio::create_file_transform();
    ocio::set_src(file, "film.spi1d");
    ocio::set_interpolation(file, ocio::INTERP_LINEAR);
    const ocio::GroupTransformRcPtr group = ocio::create_group_transform();
    ocio::push_back(group, file);
    for (const char* gain : {"0.5", "0.25"}) {
        edit(gain);
        for (const ocio::ConstTransformRcPtr& transform :
             {ocio::ConstTransformRcPtr(file), ocio::ConstTransformRcPtr(group)}) {
            std::array<float, 4> pixel{0.5f, 0.5f, 0.5f, 1};
            ocio::get_processor(config_, transform)->apply_rgba(pixel.data());
            EXPECT_FLOAT_EQ(pixel[0], 0.5f * std::stof(gain));
        }
    }
}

TEST_F(EditedFiles, StayAsTheyWereUntilTheCachesAreCleared) {
    load_space("!<FileTransform> {src: film.spi1d, interpolation: linear}");
    edit("0.5");
    EXPECT_FLOAT_EQ(half(), 0.25f);
    folder_.write("luts/film.spi1d", table("0.25"));
    EXPECT_FLOAT_EQ(half(), 0.25f);
    ocio::clear_all_caches();
    EXPECT_FLOAT_EQ(half(), 0.125f);
}

TEST_F(EditedFiles, LeaveTheConfigurationAlone) {
    load_space("!<FileTransform> {src: film.spi1d, interpolation: linear}");
    const std::string before = config_->getCacheID(ocio::library::ConstContextRcPtr());
    edit("0.5");
    half();
    edit("0.25");
    half();
    EXPECT_EQ(config_->getCacheID(ocio::library::ConstContextRcPtr()), before);
}

TEST_F(EditedFiles, DoNotSpoilTheLibrarysOwnReaderOfCorrections) {
    const std::string path = folder_.write(
        "grade.cc", "<ColorCorrection id=\"a\"><SOPNode><Slope>2 2 2</Slope></SOPNode></ColorCorrection>");
    ocio::library::CDLTransform::CreateFromFile(path.c_str(), "");
    ocio::clear_all_caches();
    EXPECT_NO_THROW(ocio::library::CDLTransform::CreateFromFile(path.c_str(), ""));
}

} // namespace
