#include "colorio/ocio/source_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SourceFiles : public testing::Test {
protected:
    /// Of a configuration with that search path and these further color spaces and looks.
    std::vector<std::string> get(const std::string& search_path, const std::string& spaces,
                                 const std::string& settings = "") {
        test_configs::ConfigText config;
        config.settings = "search_path: \"" + search_path + "\"\n" + settings;
        config.spaces = spaces;
        return ocio::get_source_files(test_configs::load(folder, config.str()));
    }
    /// A color space that is made of a file.
    static std::string make_space(const std::string& name, const std::string& file) {
        return "  - !<ColorSpace>\n    name: " + name + "\n    to_reference: !<FileTransform> {src: \"" +
               file + "\"}\n";
    }
    std::string in_folder(const std::string& name) const { return folder.file(name); }

    TempDir folder;
};

TEST_F(SourceFiles, AreWhatARelativeNameMayStandForInEveryFolderOfTheSearchPath) {
    EXPECT_THAT(get("luts:/abs", make_space("a", "film.cube") + make_space("b", "sub/../curve.spi1d")),
                ElementsAre("/abs/curve.spi1d", "/abs/film.cube", in_folder("luts/curve.spi1d"),
                            in_folder("luts/film.cube")));
}

TEST_F(SourceFiles, AreAtTheirOwnPlaceWhenTheirPathIsAbsolute) {
    EXPECT_THAT(get("luts:more", make_space("a", "/shows/film.cube")), ElementsAre("/shows/film.cube"));
}

TEST_F(SourceFiles, AreListedOnceHoweverManyTransformsNameThem) {
    EXPECT_THAT(get("luts", make_space("a", "film.cube") + make_space("b", "film.cube")),
                ElementsAre(in_folder("luts/film.cube")));
}

/// The 1.x library keeps what it was asked for, and would look for the file in the wrong place.
TEST_F(SourceFiles, AreFoundByTheLibraryAfterwards) {
    folder.write("luts/half.spi1d", "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n0.5\n}\n");
    test_configs::ConfigText text;
    text.settings = "search_path: luts\n";
    text.spaces = "  - !<ColorSpace>\n    name: half\n    to_reference: !<FileTransform> {src: half.spi1d, "
                  "interpolation: linear}\n";
    const ocio::ConstConfigRcPtr config = test_configs::load(folder, text.str());
    EXPECT_THAT(ocio::get_source_files(config), ElementsAre(in_folder("luts/half.spi1d")));
    std::array<float, 4> pixel{1, 0.5f, 0, 1};
    ocio::get_processor(config, "half", "lin")->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(0.5f, 0.25f, 0, 1));
}

TEST_F(SourceFiles, HaveTheirVariablesReplaced) {
    EnvGuard shot("SHOT_OF_THE_TEST", "s010");
    EXPECT_THAT(get("$SHOT_OF_THE_TEST", make_space("a", "${SHOT_OF_THE_TEST}.cc")),
                ElementsAre(in_folder("s010/s010.cc")));
}

TEST_F(SourceFiles, AreFoundInGroupsAndInBothDirectionsOfSpacesAndLooks) {
    const std::string spaces = R"(  - !<ColorSpace>
    name: a
    to_reference: !<GroupTransform>
      children:
        - !<CDLTransform> {sat: 0.5}
        - !<GroupTransform> {children: [!<FileTransform> {src: deep.cube}]}
    from_reference: !<FileTransform> {src: back.cube}
)";
    const std::string looks = R"(looks:
  - !<Look>
    name: grade
    process_space: lin
    transform: !<FileTransform> {src: grade.cc}
    inverse_transform: !<FileTransform> {src: ungrade.cc}
)";
    EXPECT_THAT(get("", spaces, looks), ElementsAre(in_folder("back.cube"), in_folder("deep.cube"),
                                                    in_folder("grade.cc"), in_folder("ungrade.cc")));
}

TEST_F(SourceFiles, AreNoneWhereNoFileIsNamed) {
    EXPECT_THAT(get("luts", ""), IsEmpty());
}

} // namespace
