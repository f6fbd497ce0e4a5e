#include "colorio/ocio/processor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <vector>

#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using test_configs::ConfigText;
using test_configs::load;
using test_configs::refusal_of;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;

/// From "x", whose transform is given as YAML, to "lin".
ConfigText text_with(const std::string& transform, const std::string& more = "") {
    ConfigText text;
    text.settings = "search_path: luts:.\n";
    text.spaces = "  - !<ColorSpace>\n    name: x\n    to_reference: " + transform + "\n" + more;
    return text;
}

/// Adds (0.5, 0.25, 0.125) to red, green and blue, exactly.
constexpr const char* SHIFT = "!<MatrixTransform> {offset: [0.5, 0.25, 0.125, 0]}";

class Processors : public testing::Test {
protected:
    ocio::ConstProcessorRcPtr make(const ConfigText& text) {
        return ocio::get_processor(load(folder_, text.str()), "x", "lin");
    }
    ocio::ConstProcessorRcPtr make_shift() { return make(text_with(SHIFT)); }
    std::string refusal(const ConfigText& text) {
        return refusal_of([&] { make(text); });
    }

    TempDir folder_;
};

TEST_F(Processors, ConvertOnePixelAndLeaveAlphaAlone) {
    std::array<float, 4> pixel{1, 2, 3, 0.75f};
    make_shift()->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(1.5f, 2.25f, 3.125f, 0.75f));
}

TEST_F(Processors, ConvertPixelsOfThreeChannels) {
    std::vector<float> pixels{0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3};
    make_shift()->apply(ocio::PackedImageDesc{pixels.data(), 2, 2, 3});
    EXPECT_THAT(pixels, ElementsAre(0.5f, 0.25f, 0.125f, 1.5f, 1.25f, 1.125f, 2.5f, 2.25f, 2.125f, 3.5f,
                                    3.25f, 3.125f));
}

TEST_F(Processors, ConvertPixelsOfFourChannels) {
    std::vector<float> pixels{0, 0, 0, 9, 1, 1, 1, 8};
    make_shift()->apply(ocio::PackedImageDesc{pixels.data(), 1, 2, 4});
    EXPECT_THAT(pixels, ElementsAre(0.5f, 0.25f, 0.125f, 9, 1.5f, 1.25f, 1.125f, 8));
}

TEST_F(Processors, LeaveFurtherChannelsAlone) {
    std::vector<float> pixels{0, 0, 0, 9, 7, 6, 1, 1, 1, 8, 5, 4, 2, 2, 2, 3, 2, 1, 3, 3, 3, 0, -1, -2};
    make_shift()->apply(ocio::PackedImageDesc{pixels.data(), 2, 2, 6});
    EXPECT_THAT(pixels, ElementsAre(0.5f, 0.25f, 0.125f, 9, 7, 6, 1.5f, 1.25f, 1.125f, 8, 5, 4, 2.5f, 2.25f,
                                    2.125f, 3, 2, 1, 3.5f, 3.25f, 3.125f, 0, -1, -2));
}

TEST_F(Processors, RefuseFewerThanThreeChannelsAndEmptyImages) {
    const auto processor = make_shift();
    std::vector<float> pixels(16, 1.0f);
    for (const long channels : {0L, 1L, 2L})
        EXPECT_THROW(processor->apply(ocio::PackedImageDesc{pixels.data(), 2, 2, channels}), ocio::Exception)
            << channels;
    EXPECT_THROW(processor->apply(ocio::PackedImageDesc{pixels.data(), 0, 2, 4}), ocio::Exception);
    EXPECT_THROW(processor->apply(ocio::PackedImageDesc{pixels.data(), 2, 0, 4}), ocio::Exception);
    EXPECT_THAT(pixels, Each(1.0f));
}

TEST_F(Processors, ConvertPlanes) {
    std::array<float, 2> red{0, 1}, green{0, 1}, blue{0, 1}, alpha{9, 8};
    make_shift()->apply(ocio::PlanarImageDesc{red.data(), green.data(), blue.data(), alpha.data(), 2, 1});
    EXPECT_THAT(red, ElementsAre(0.5f, 1.5f));
    EXPECT_THAT(green, ElementsAre(0.25f, 1.25f));
    EXPECT_THAT(blue, ElementsAre(0.125f, 1.125f));
    EXPECT_THAT(alpha, ElementsAre(9, 8));
}

TEST_F(Processors, ConvertPlanesWithoutAlpha) {
    std::array<float, 2> red{0, 1}, green{0, 1}, blue{0, 1};
    make_shift()->apply(ocio::PlanarImageDesc{red.data(), green.data(), blue.data(), nullptr, 1, 2});
    EXPECT_THAT(red, ElementsAre(0.5f, 1.5f));
    EXPECT_THAT(green, ElementsAre(0.25f, 1.25f));
    EXPECT_THAT(blue, ElementsAre(0.125f, 1.125f));
}

TEST_F(Processors, ThatDoNothingTouchNothing) {
    const auto processor = make(text_with("!<MatrixTransform> {}"));
    EXPECT_TRUE(processor->is_no_op());
    EXPECT_FALSE(make_shift()->is_no_op());
    std::vector<float> pixels{-1, 2, 1e30f, 4};
    processor->apply_rgba(pixels.data());
    processor->apply(ocio::PackedImageDesc{pixels.data(), 1, 1, 4});
    EXPECT_THAT(pixels, ElementsAre(-1, 2, 1e30f, 4));
    EXPECT_NO_THROW(processor->apply(ocio::PackedImageDesc{nullptr, 0, 0, 1}));
}

TEST_F(Processors, ThatTurnOutToDoNothingTouchNothing) {
    // A correction of power 1 must not clamp negatives.
    const auto config = test_configs::create_corrections();
    const auto processor = ocio::get_processor(config, "No CDL", "identity");
    std::array<float, 4> pixel{-0.5f, 2, 0, 1};
    processor->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(-0.5f, 2, 0, 1));
}

TEST_F(Processors, LeadFromASpaceToAView) {
    ConfigText text = text_with(SHIFT);
    text.displays = "  d:\n    - !<View> {name: v, colorspace: x}\n";
    const auto processor =
        ocio::get_processor(load(folder_, text.str()), ocio::DisplayTransform{"lin", "d", "v"});
    std::array<float, 4> pixel{0.5f, 0.25f, 0.125f, 1};
    processor->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(0, 0, 0, 1));
}

TEST_F(Processors, RefuseUnknownNames) {
    const auto config = load(folder_, text_with(SHIFT).str());
    EXPECT_THAT(refusal_of([&] { ocio::get_processor(config, "nowhere", "lin"); }), HasSubstr("nowhere"));
    EXPECT_THAT(refusal_of([&] { ocio::get_processor(config, "lin", "nowhere"); }), HasSubstr("nowhere"));
    const auto view = [&](const char* input, const char* display, const char* name) {
        return refusal_of([&] { ocio::get_processor(config, ocio::DisplayTransform{input, display, name}); });
    };
    EXPECT_THAT(view("nowhere", "d", "v"), HasSubstr("nowhere"));
    EXPECT_EQ(view("lin", "nowhere", "v"), "display 'nowhere' has no view 'v'");
    EXPECT_EQ(view("lin", "d", "nowhere"), "display 'd' has no view 'nowhere'");
    EXPECT_EQ(view("lin", "", "v"), "display '' has no view 'v'");
}

TEST_F(Processors, TakeUnknownNamesForTheDefaultRoleUnderLaxParsing) {
    ConfigText text = text_with(SHIFT);
    text.settings += "strictparsing: false\n";
    text.roles = "  default: x\n";
    const auto config = load(folder_, text.str());
    std::array<float, 4> pixel{0, 0, 0, 1};
    ocio::get_processor(config, "nowhere", "lin")->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(0.5f, 0.25f, 0.125f, 1));
}

TEST_F(Processors, NamedTransformsCountAsKnownUnderLaxParsing) {
    SKIP_WHERE_LISTED();
    ConfigText text = text_with("!<MatrixTransform> {}");
    text.version = "2";
    text.settings += "strictparsing: false\nnamed_transforms:\n"
                     "  - !<NamedTransform>\n    name: shift\n    transform: " +
                     std::string(SHIFT) + "\n";
    const auto config = load(folder_, text.str());
    std::array<float, 4> pixel{0, 0, 0, 1};
    ocio::get_processor(config, "shift", "lin")->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(0.5f, 0.25f, 0.125f, 1));
}

TEST_F(Processors, OutliveTheirConfiguration) {
    auto config = load(folder_, text_with(SHIFT).str());
    const auto processor = ocio::get_processor(config, "x", "lin");
    config.reset();
    std::array<float, 4> pixel{0, 0, 0, 1};
    processor->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(0.5f, 0.25f, 0.125f, 1));
}

/// A table that multiplies by `gain` between 0 and 1.
std::string table(const std::string& gain) {
    return "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n" + gain + "\n}\n";
}

class ProcessorFiles : public Processors {
protected:
    ConfigText text() const {
        return text_with("!<FileTransform> {src: table.spi1d, interpolation: linear}");
    }
    float half_of(const ocio::ConstProcessorRcPtr& processor) const {
        std::array<float, 4> pixel{0.5f, 0.5f, 0.5f, 1};
        processor->apply_rgba(pixel.data());
        return pixel[0];
    }
};

TEST_F(ProcessorFiles, AreFoundAlongTheSearchPath) {
    folder_.write("luts/table.spi1d", table("0.5"));
    EXPECT_FLOAT_EQ(half_of(make(text())), 0.25f);
}

TEST_F(ProcessorFiles, AreListed) {
    folder_.write("luts/table.spi1d", table("0.5"));
    const auto processor = make(text());
    ASSERT_EQ(processor->get_files().size(), 1u);
    EXPECT_TRUE(std::filesystem::equivalent(processor->get_files()[0], folder_.file("luts/table.spi1d")));
}

TEST_F(ProcessorFiles, AreDigestedByTheirNumbers) {
    const auto digest = [&](const std::string& content) {
        ocio::clear_all_caches();
        folder_.write("table.spi1d", content);
        return make(text())->get_digest();
    };
    const std::string first = digest(table("0.5"));
    EXPECT_NE(digest(table("0.25")), first);
    EXPECT_EQ(digest(table("0.50")), first) << "the same numbers";
}

TEST_F(ProcessorFiles, AreNamedWithThePathSearchedWhenMissing) {
    EXPECT_THAT(refusal(text()), AllOf(HasSubstr("table.spi1d"), HasSubstr(folder_.file("luts/table.spi1d")),
                                       HasSubstr(folder_.file("table.spi1d"))));
}

TEST_F(ProcessorFiles, AreRefusedWhenCutShortOrGarbled) {
    for (const char* content :
         {"", "\0\1\2\3", "Version 1\nFrom 0.0 1.0\nLength 5\nComponents 1\n{\n0.0\n"}) {
        ocio::clear_all_caches();
        folder_.write("table.spi1d", content);
        EXPECT_THAT(refusal(text()), HasSubstr("table.spi1d")) << content;
    }
}

TEST_F(ProcessorFiles, AreRefusedWhenTheyAreNoFiles) {
    ASSERT_EQ(mkfifo(folder_.file("table.spi1d").c_str(), 0600), 0);
    EXPECT_THAT(refusal(text()), HasSubstr("is not a regular file"));
}

TEST_F(ProcessorFiles, AreReadAgainAfterTheCachesAreCleared) {
    const auto loaded = load(folder_, text().str());
    const ocio::ConstConfigRcPtr copy = ocio::create_editable_copy(loaded);
    for (const ocio::ConstConfigRcPtr& config : {loaded, copy}) {
        folder_.write("table.spi1d", table("0.5"));
        ocio::clear_all_caches();
        const auto before = ocio::get_processor(config, "x", "lin");
        EXPECT_FLOAT_EQ(half_of(before), 0.25f);
        folder_.write("table.spi1d", table("0.25"));
        ocio::clear_all_caches();
        EXPECT_FLOAT_EQ(half_of(ocio::get_processor(config, "x", "lin")), 0.125f);
        EXPECT_FLOAT_EQ(half_of(before), 0.25f) << "existing processors keep their tables";
    }
}

TEST_F(ProcessorFiles, WithOverlongWordsNeverReachTheLibrary) {
    folder_.write("table.spi1d", table(std::string(64, '1')));
    EXPECT_EQ(refusal(text()),
              "'" + folder_.file("table.spi1d") +
                  "' cannot be read as a LUT: line 7 contains a word longer than any number");
}

TEST_F(ProcessorFiles, AreJudgedWhereverTheConversionReachesThem) {
    folder_.write("table.spi1d", table(std::string(64, '1')));
    const std::string nested = "!<GroupTransform>\n      children:\n        - !<ColorSpaceTransform> "
                               "{src: y, dst: lin}\n";
    const std::string file_space = "  - !<ColorSpace>\n    name: y\n    to_reference: "
                                   "!<FileTransform> {src: table.spi1d, interpolation: linear}\n";
    EXPECT_THAT(refusal(text_with(nested, file_space)), HasSubstr("contains a word longer than any number"));
    EXPECT_EQ(refusal(text_with(SHIFT, file_space)), "nothing thrown") << "other conversions are unharmed";
}

TEST_F(ProcessorFiles, MayHoldOneCorrectionOfACollection) {
    folder_.write("grade.ccc",
                  "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\">"
                  "<ColorCorrection id=\"a\"><SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset>"
                  "<Power>1 1 1</Power></SOPNode></ColorCorrection>"
                  "<ColorCorrection id=\"b\"><SOPNode><Slope>4 4 4</Slope><Offset>0 0 0</Offset>"
                  "<Power>1 1 1</Power></SOPNode></ColorCorrection></ColorCorrectionCollection>");
    EXPECT_FLOAT_EQ(
        half_of(make(text_with("!<FileTransform> {src: grade.ccc, cccid: b, interpolation: linear}"))), 2.0f);
}

} // namespace
