#include "colorio/ocio/failure_cause.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/processor.h"
#include "colorio/ocio/unset_variables.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using testing::EndsWith;
using testing::HasSubstr;

constexpr char START[] = R"(ocio_profile_version: 1
search_path: luts
roles: {default: lin}
displays:
  d:
    - !<View> {name: v, colorspace: lin}
looks:
  - !<Look> {name: warm, process_space: lin, transform: !<CDLTransform> {slope: [2, 1, 1]}}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: log
    from_reference: )";

constexpr char SHOTS[] = "<ColorCorrectionCollection><ColorCorrection id='a'><SOPNode><Slope>1 1 1</Slope>"
                         "<Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>"
                         "</ColorCorrectionCollection>";

class FailureCause : public testing::Test {
protected:
    ocio::ConstConfigRcPtr load(const std::string& transform) {
        return test_configs::load(folder, START + transform + "\n");
    }

    /// Why one color space cannot be converted to the other, when "log" comes of that transform.
    Diagnostic find(const std::string& transform, const char* from = "lin", const char* to = "log") {
        return find_in(load(transform), from, to);
    }

    static Diagnostic find_in(const ocio::ConstConfigRcPtr& config, const char* from, const char* to) {
        try {
            ocio::get_processor(config, from, to);
        } catch (const ocio::Exception& exception) {
            return ocio::get_cause(exception);
        }
        ADD_FAILURE() << "no failure";
        return {};
    }

    TempDir folder;
    EnvGuard shot{"QB_TEST_SHOT"};
};

TEST_F(FailureCause, AMissingFileIsGivenWithThePlacesThatWereSearched) {
    const Diagnostic cause = find("!<FileTransform> {src: \"artist's film.cube\"}");
    EXPECT_EQ(cause.code, Code::LUT_MISSING);
    EXPECT_EQ(cause.subject, "artist's film.cube");
    EXPECT_THAT(cause.hint, HasSubstr("/luts/artist's film.cube'"));
    EXPECT_THAT(find("!<FileTransform> {src: /nowhere/film.cube}").hint, EndsWith("'/nowhere/film.cube'"));
}

TEST_F(FailureCause, AVariableWithoutAValueIsNamed) {
    const Diagnostic one = find("!<FileTransform> {src: \"${QB_TEST_SHOT}/film.cube\"}");
    EXPECT_EQ(one.code, Code::CONFIG_VARIABLE);
    EXPECT_EQ(one.subject, "QB_TEST_SHOT");
    EXPECT_THAT(one.message, EndsWith("is not set"));
    const Diagnostic two = find("!<FileTransform> {src: \"$QB_TEST_SHOT/%QB_TEST_TAKE%.cube\"}");
    EXPECT_THAT(two.message, HasSubstr("'QB_TEST_SHOT', 'QB_TEST_TAKE'"));
    EXPECT_THAT(two.message, EndsWith("are not set"));
}

TEST_F(FailureCause, AVariableBehindOthersIsNamedWithThem) {
    const EnvGuard luts("QB_TEST_LUTS", "$QB_TEST_SHOW/luts"), show("QB_TEST_SHOW", "%QB_TEST_SHOT%");
    const Diagnostic cause = find("!<FileTransform> {src: $QB_TEST_LUTS/film.cube}");
    EXPECT_EQ(cause.code, Code::CONFIG_VARIABLE);
    EXPECT_EQ(cause.subject, "QB_TEST_SHOT");
    EXPECT_THAT(
        cause.message,
        EndsWith("the context variable 'QB_TEST_SHOT' in the path '$QB_TEST_LUTS/film.cube' is not set "
                 "(QB_TEST_LUTS -> QB_TEST_SHOW -> QB_TEST_SHOT)"));
}

TEST_F(FailureCause, AVariableOfTheSearchPathIsNamed) {
    const EnvGuard luts("QB_TEST_LUTS", "$QB_TEST_SHOT/luts");
    std::string text = START;
    text.replace(text.find("luts"), 4, "luts:$QB_TEST_LUTS");
    const auto config = test_configs::load(folder, text + "!<FileTransform> {src: film.cube}\n");
    const Diagnostic cause = find_in(config, "lin", "log");
    EXPECT_EQ(cause.code, Code::CONFIG_VARIABLE);
    EXPECT_EQ(cause.subject, "QB_TEST_SHOT");
    EXPECT_THAT(cause.message,
                EndsWith("the file 'film.cube' is missing: the context variable 'QB_TEST_SHOT' "
                         "in the search path '$QB_TEST_LUTS' is not set "
                         "(QB_TEST_LUTS -> QB_TEST_SHOT)"));
    EXPECT_THAT(cause.hint, HasSubstr("; searched paths: '" + folder.get_path() + "/luts/film.cube'"));
}

TEST_F(FailureCause, AFolderOfTheSearchPathMayLookLikeAVariable) {
    folder.write("$QB_TEST_SHOT/luts/other.cube", "");
    std::string text = START;
    text.replace(text.find("luts"), 4, "$QB_TEST_SHOT/none");
    const auto config = test_configs::load(folder, text + "!<FileTransform> {src: film.cube}\n");
    EXPECT_EQ(find_in(config, "lin", "log").code, Code::LUT_MISSING);
}

TEST_F(FailureCause, UnsetVariablesAreFoundBeforeAConversion) {
    const auto found = ocio::find_unset_variable(load("!<FileTransform> {src: \"$QB_TEST_SHOT/film.cube\"}"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->subject, "QB_TEST_SHOT");
    EXPECT_FALSE(ocio::find_unset_variable(load("!<FileTransform> {src: film.cube}")));
}

TEST_F(FailureCause, AFileIsDamaged) {
    const std::string path = folder.write("luts/cut.spi1d", "Version 1\nFrom 0.0 1.0\nLength 2\n");
    const Diagnostic cause = find("!<FileTransform> {src: cut.spi1d}");
    EXPECT_EQ(cause.code, Code::LUT_DAMAGED);
    EXPECT_THAT(cause.message, HasSubstr("'" + path + "' is damaged"));
}

TEST_F(FailureCause, ATransformFileBeyondTheLibrarysVersionIsTooNew) {
    folder.write("luts/new.ctf", "<?xml version='1.0'?>\n<ProcessList id='a' version='99'><Matrix "
                                 "inBitDepth='32f' outBitDepth='32f'><Array dim='3 3 3'>1 0 0 0 1 0 0 0 "
                                 "1</Array></Matrix></ProcessList>\n");
    EXPECT_THAT(find("!<FileTransform> {src: new.ctf}").message,
                EndsWith("is of version 99, which needs a newer OpenColorIO"));
    folder.write("luts/new.clf", "<?xml version='1.0'?>\n<ProcessList id='a' compCLFversion='3.5'><Matrix "
                                 "inBitDepth='32f' outBitDepth='32f'><Array dim='3 3'>1 0 0 0 1 0 0 0 "
                                 "1</Array></Matrix></ProcessList>\n");
    EXPECT_THAT(find("!<FileTransform> {src: new.clf}").message,
                EndsWith("is of version 3.5, which needs a newer OpenColorIO"));
}

TEST_F(FailureCause, ACorrectionIsNotInItsFile) {
    folder.write("luts/shots.ccc", SHOTS);
    const Diagnostic cause = find("!<FileTransform> {src: shots.ccc, cccid: b}");
    EXPECT_EQ(cause.code, Code::CDL_ID_MISSING);
    folder.write("luts/broken.cc", "<ColorCorrection id='a'>");
    EXPECT_EQ(find("!<FileTransform> {src: broken.cc}").code, Code::LUT_DAMAGED);
}

TEST_F(FailureCause, ATransformHasNoInverse) {
    const Diagnostic matrix =
        find("!<MatrixTransform> {matrix: [0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}", "log", "lin");
    EXPECT_EQ(matrix.code, Code::MATRIX_SINGULAR);
    EXPECT_EQ(matrix.subject, "log");
    EXPECT_EQ(matrix.message,
              "the matrix of the color space 'log' cannot be inverted, so this direction does not exist");
    EXPECT_EQ(find("!<CDLTransform> {slope: [0, 1, 1]}", "log", "lin").message,
              "the CDL of the color space 'log' (slope 0 1 1, saturation 1) cannot be inverted, so this "
              "direction does not exist");
    EXPECT_EQ(find("!<CDLTransform> {saturation: 0}", "log", "lin").message,
              "the CDL of the color space 'log' (slope 1 1 1, saturation 0) cannot be inverted, so this "
              "direction does not exist");
}

TEST_F(FailureCause, ALutOfASingleEntryHasNoInverse) {
    if (std::string(ocio::get_version()).substr(0, 2) == "1.")
        GTEST_SKIP() << "OpenColorIO 1 inverts no 3D LUT";
    const std::string cube = folder.write("luts/one.cube", "LUT_3D_SIZE 1\n0.5 0.5 0.5\n");
    const std::string grid = folder.write("luts/one.spi3d", "SPILUT 1.0\n3 3\n1 1 1\n0 0 0 0.5 0.5 0.5\n");
    for (const std::string& path : {cube, grid}) {
        const Diagnostic cause = find("!<FileTransform> {src: " + path + "}", "log", "lin");
        EXPECT_EQ(cause.code, Code::MATRIX_SINGULAR);
        EXPECT_EQ(cause.message,
                  "the file '" + path + "' cannot be inverted, so this direction does not exist");
    }
}

TEST_F(FailureCause, AFileIsBlamedOnlyInTheDirectionThatItLacks) {
    const std::string path = folder.write("luts/flat.spimtx", "0 0 0 0\n0 1 0 0\n0 0 1 0\n");
    const Diagnostic own = find("!<FileTransform> {src: flat.spimtx}", "log", "lin");
    EXPECT_EQ(own.code, Code::MATRIX_SINGULAR);
    EXPECT_EQ(own.file, path);
    const Diagnostic other = find("!<GroupTransform> {children: [!<ExponentTransform> {value: [0, 1, 1, 1]}, "
                                  "!<FileTransform> {src: flat.spimtx, direction: inverse}]}",
                                  "log", "lin");
    EXPECT_EQ(other.code, Code::CONVERSION_IMPOSSIBLE);
    EXPECT_EQ(other.file, "");
}

TEST_F(FailureCause, ANameIsNotInTheConfig) {
    const Diagnostic look = find("!<LookTransform> {src: lin, dst: lin, looks: \"warm, -cold\"}");
    EXPECT_EQ(look.code, Code::LOOK_UNKNOWN);
    EXPECT_EQ(look.subject, "cold");
    const Diagnostic space = find("!<ColorSpaceTransform> {src: lin, dst: lag}");
    EXPECT_EQ(space.code, Code::COLOR_SPACE_UNKNOWN);
    EXPECT_EQ(space.subject, "lag");
}

} // namespace
