// Wrong uses of the commands that write files: each gets one error, and no file changes.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
#include <map>
#include <sstream>

#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool/native_image.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::HasSubstr;

/// A command line, its exit code, and a part of its error. "@NAME" stands for the path of a file of the test,
/// '' for an empty argument.
struct WrongUse {
    std::string arguments;
    int code;
    const char* message;

    friend std::ostream& operator<<(std::ostream& stream, const WrongUse& use) {
        return stream << use.arguments;
    }
};

class WrongUseOf : public ToolTest, public testing::WithParamInterface<WrongUse> {
protected:
    WrongUseOf() {
        const std::vector<float> gray = {0.5f, 0.5f, 0.5f};
        for (const char* name : {"in.exr", "out.exr", "shot.1.exr", "shot.2.exr", "done.1.exr", "a?b.exr"})
            write_image(path(name), make_image(1, 1, 3, OIIO::TypeHalf, gray));
        write_image(path("out.png"), make_image(1, 1, 3, OIIO::TypeUInt8, gray));
        write_image(path("out.dpx"), make_image(1, 1, 3, OIIO::TypeUInt16, gray));
        NativeImage data = make_native_image(1, 1, {{"Z", OIIO::TypeFloat}, {"N.X", OIIO::TypeFloat}});
        write_native(path("data.exr"), {data});
        folder.write("show.ocio", SHOW_CONFIG);
        folder.write("broken.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
        folder.write("text.exr", "this is not an image\n");
        folder.write("empty.exr", "");
        folder.write("grades.ccc",
                     "<ColorCorrectionCollection><ColorCorrection id='a'><SOPNode><Slope>1 1 1</Slope>"
                     "<Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>"
                     "</ColorCorrectionCollection>");
        folder.write("negative.cc",
                     "<ColorCorrection id='a'><SOPNode><Slope>-1 1 1</Slope></SOPNode></ColorCorrection>");
        folder.write("cut.cube", "LUT_3D_SIZE 2\n0 0 0\n");
        folder.write("film.cube", "LUT_1D_SIZE 2\n0 0 0\n0.5 0.5 0.5\n");
        folder.write("preferences.yaml", "file_type: \"qb_colorio preferences\"\n");
        std::filesystem::create_directory(path("folder.exr"));
    }

    std::vector<std::string> get_words() const {
        std::vector<std::string> words;
        std::istringstream line(GetParam().arguments);
        for (std::string word; line >> word;) {
            const std::size_t at = word.find('@');
            words.push_back(word == "''"      ? ""
                            : at == word.npos ? word
                                              : word.substr(0, at) + path(word.substr(at + 1)));
        }
        return words;
    }

    /// The bytes of every file, but for the cache.
    std::map<std::string, std::string> read_files() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.get_path())) {
            const std::string name = entry.path().lexically_relative(folder.get_path()).string();
            if (name.rfind("cache", 0) == 0 || !entry.is_regular_file())
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            files[name] = std::string(std::istreambuf_iterator<char>(file), {});
        }
        return files;
    }
};

TEST_P(WrongUseOf, GetsOneErrorAndChangesNoFile) {
    const std::map<std::string, std::string> before = read_files();
    const ToolRun result = run(get_words());
    EXPECT_EQ(result.code, GetParam().code) << result;
    EXPECT_THAT(result.err, HasSubstr(GetParam().message));
    std::size_t errors = 0;
    for (std::size_t at = 0; (at = result.err.find("colorio: error: ", at)) != std::string::npos; ++at)
        ++errors;
    EXPECT_EQ(errors, 1u) << result.err;
    const std::map<std::string, std::string> after = read_files();
    for (const auto& [name, content] : before)
        EXPECT_TRUE(after.count(name) == 1 && after.at(name) == content) << name << " changed";
    EXPECT_EQ(after.size(), before.size()) << "a new file";
}

constexpr char CONVERT[] = "convert @in.exr @out.exr --config @show.ocio ";

WrongUse convert(const std::string& options, int code, const char* message) {
    return {CONVERT + options, code, message};
}

/// With the built-in config.
WrongUse convert_builtin(const std::string& options, int code, const char* message) {
    return {"convert @in.exr @out.exr --from linear --to sRGB " + options, code, message};
}

INSTANTIATE_TEST_SUITE_P(
    Spaces, WrongUseOf,
    testing::Values(
        convert("", 2, "no destination: --to or --view is required"), //
        convert("--from lin", 2, "no destination"),
        convert("--from linn --to half_light", 1, "did you mean 'lin'"),
        convert("--from lin --to half_lihgt", 1, "did you mean 'half_light'"),
        convert("--from lin --view Film", 1, "Film"), convert("--from lin --display Monitor", 2, "--view"),
        convert("--from lin --to lin --display Monitor", 2, "--to and --display cannot be combined"),
        convert("--from lin --display Moniter --view Film", 1, "Monitor"),
        convert("--from lin --view Monitor.Flim", 1, "Film"),
        convert("--from lin --to half_light --view Monitor.Film", 2, "--view"),
        convert("--from lin --inverse-view Monitor.Film --to lin", 2, "--inverse-view"),
        convert("--inverse-view Monitor", 1, "Monitor"),
        convert("--from lin --to half_light --strict --from lin", 2, "--from"),
        WrongUse{"convert @in.exr @out.exr --from lin --to linear --config @none.ocio", 1, "none.ocio"},
        WrongUse{"convert @in.exr @out.exr --from lin --to linear --config @broken.ocio", 1, "broken.ocio"},
        WrongUse{"convert @in.exr @out.exr --from lin --to linear --config @in.exr", 1, "in.exr"}));

INSTANTIATE_TEST_SUITE_P(Steps, WrongUseOf,
                         testing::Values(convert("--from lin --to lin --look warmth", 1, "warmth"),
                                         convert("--from lin --to lin --cdl @none.ccc", 1, "none.ccc"),
                                         convert("--from lin --to lin --cdl @grades.ccc:b", 1, "'b'"),
                                         convert("--from lin --to lin --cdl @negative.cc", 1, "negative.cc"),
                                         convert("--from lin --to lin --cdl unknown", 1, "unknown"),
                                         convert("--from lin --lut @none.cube", 1, "none.cube"),
                                         convert("--from lin --lut @cut.cube", 1, "cut.cube"),
                                         convert("--from lin --lut @folder.exr", 1, "folder.exr"),
                                         convert("--from lin --to lin --inverse", 2, "--inverse"),
                                         convert("--from lin --to lin --inverse-cdl", 2, "--cdl"),
                                         convert("--from lin --to lin --named-transform none", 1, "none"),
                                         convert("--from lin --to lin --context SHOT", 2, "KEY=VALUE"),
                                         convert("--from lin --to lin --context =a", 2, "KEY=VALUE")));

/// With a source, a destination and an option with an empty value, as a script writes it for a variable that
/// is not set.
WrongUse convert_empty(const std::string& option, const std::string& name) {
    static std::list<std::string> messages; // which the uses point to
    return convert("--from lin --to lin " + option, 2,
                   messages.emplace_back(name + " needs a value").c_str());
}

INSTANTIATE_TEST_SUITE_P(
    EmptyValues, WrongUseOf,
    testing::Values(
        convert_empty("--look ''", "--look"), convert_empty("--look=", "--look"),
        convert_empty("--cdl ''", "--cdl"), convert_empty("--lut ''", "--lut"),
        convert_empty("--named-transform ''", "--named-transform"), convert_empty("--view ''", "--view"),
        convert_empty("--display ''", "--display"), convert_empty("--inverse-view ''", "--inverse-view"),
        convert_empty("--context ''", "--context"), convert_empty("--depth ''", "--depth"),
        convert_empty("--compression ''", "--compression"),
        convert_empty("--compression= --dither", "--compression"), convert_empty("--quality ''", "--quality"),
        convert_empty("--layers ''", "--layers"), convert_empty("--parts ''", "--parts"),
        convert_empty("--skip ''", "--skip"), convert_empty("--frames ''", "--frames"),
        convert_empty("--memory ''", "--memory"), convert_empty("--threads ''", "--threads"),
        convert_empty("--prefs ''", "--prefs"), convert("--from '' --to lin", 2, "--from needs a value"),
        convert("--from --to lin", 2, "--from needs a value"),
        convert("--from lin --to lin --look --dither", 2, "--look needs a value"),
        convert("--from lin --to ''", 2, "--to needs a value"),
        WrongUse{"convert @in.exr @out.exr --from linear --to sRGB --config ''", 2, "--config needs a value"},
        WrongUse{"convert '' @out.exr --from linear --to sRGB", 2, "input needs a value"},
        WrongUse{"convert @in.exr '' --from linear --to sRGB", 2, "output needs a value"},
        WrongUse{"view @in.exr --screenshot ''", 2, "--screenshot needs a value"},
        WrongUse{"shader --from linear --to sRGB -o ''", 2, "--output needs a value"}));

INSTANTIATE_TEST_SUITE_P(
    Files, WrongUseOf,
    testing::Values(WrongUse{"convert", 2, "input"}, WrongUse{"convert @in.exr", 2, "output"},
                    WrongUse{"convert @in.exr @out.exr @out.png --from linear --to sRGB", 2, "out.png"},
                    WrongUse{"convert @none.exr @out.exr --from linear --to sRGB", 1, "no such file"},
                    WrongUse{"convert @text.exr @out.exr --from linear --to sRGB", 1, "text.exr"},
                    WrongUse{"convert @empty.exr @out.exr --from linear --to sRGB", 1, "empty.exr"},
                    WrongUse{"convert @folder.exr @out.exr --from linear --to sRGB", 1, "folder"},
                    WrongUse{"convert @in.exr @folder.exr --from linear --to sRGB", 1, "folder"},
                    WrongUse{"convert @in.exr @none/out.exr --from linear --to sRGB", 1, "none"},
                    WrongUse{"convert @in.exr @out.xyz --from linear --to sRGB", 1, "out.xyz"},
                    WrongUse{"convert @in.exr @out --from linear --to sRGB", 1, "out"},
                    WrongUse{"convert @in.exr /dev/null --from linear --to sRGB", 1, "/dev/null"},
                    WrongUse{"convert @data.exr @out.exr --from linear --to sRGB", 1, "data.exr"},
                    convert_builtin("--layers none", 1, "none"),
                    convert_builtin("--layers rgba,,N", 2, "expected values separated by commas"),
                    convert_builtin("--skip N,", 2, "expected values separated by commas"),
                    convert_builtin("--parts 2", 1, "2"), convert_builtin("--skip rgba", 1, "rgba")));

INSTANTIATE_TEST_SUITE_P(
    Output, WrongUseOf,
    testing::Values(convert("--from lin --to half_light -d uint9", 2, "uint9"),
                    WrongUse{"convert @in.exr @out.png --from linear --to sRGB -d half", 1, "out.png"},
                    convert_builtin("-d uint10", 1, "out.exr"),
                    convert("--from lin --to half_light --compression lzw", 1, "lzw"),
                    convert("--from lin --to half_light --compression zip --quality 10", 1, "10"),
                    convert("--from lin --to half_light --quality x", 2, "--quality"),
                    WrongUse{"convert @in.exr @out.dpx --from linear --to sRGB --compression rle", 1, "dpx"},
                    convert("--from lin --to half_light --threads 0", 2, "--threads"),
                    convert("--from lin --to half_light --threads many", 2, "--threads"),
                    convert("--from lin --to half_light --unpremult --no-unpremult", 2, "--no-unpremult"),
                    convert("--from lin --to half_light --depht half", 2, "--depth")));

INSTANTIATE_TEST_SUITE_P(
    Sequences, WrongUseOf,
    testing::Values(
        WrongUse{"convert @shot.#.exr @out.exr --from linear --to sRGB", 2, "out.exr"},
        WrongUse{"convert @in.exr @done.#.exr --from linear --to sRGB", 2, "in.exr"},
        WrongUse{"convert @shot.#.exr @done.#.exr --from linear --to sRGB --frames 1-2-3", 2, "1-2-3"},
        WrongUse{"convert @shot.#.exr @done.#.exr --from linear --to sRGB --frames 1-2x0", 2, "1-2x0"},
        WrongUse{"convert @shot.#.exr @done.#.exr --from linear --to sRGB --frames a", 2, "'a'"},
        convert_builtin("--frames 1-2", 2, "no frame number in"),
        WrongUse{"convert @none.#.exr @done.#.exr --from linear --to sRGB", 1, "none.#.exr"},
        WrongUse{"convert @shot.#.exr @done.#.exr --from linear --to sRGB --memory 1X", 2,
                 "invalid size '1X'"},
        WrongUse{"convert @shot.#.exr @done.#.xyz --from linear --to sRGB", 1, "xyz"}));

INSTANTIATE_TEST_SUITE_P(
    OtherCommands, WrongUseOf,
    testing::Values(
        WrongUse{"bake @film.cube --to sRGB", 2, "--from"},
        WrongUse{"bake @film.cube --from linear --to sRBG", 1, "sRBG"},
        WrongUse{"bake @film.txt --from linear --to sRGB", 2, "film.txt"},
        WrongUse{"bake @film.cube --from linear --to sRGB --size 1", 2, "invalid LUT size 1"},
        WrongUse{"bake @film.cube --from linear --to sRGB --shaper none", 1, "none"},
        WrongUse{"bake @none/film.cube --from linear --to sRGB", 1, "none"},
        WrongUse{"shader --from linear --to sRGB", 2, "--output"},
        WrongUse{"shader --from linear -o @folder.exr", 2, "no destination"},
        WrongUse{"shader --from linear --to sRGB -o @film.cube", 1, "film.cube"},
        WrongUse{"cdl write @grades.ccc --cdl a=1,1,1", 2, "SLOPE/OFFSET/POWER/SATURATION"},
        WrongUse{"cdl write @grades.ccc --cdl a=-1,1,1/0,0,0/1,1,1/1", 2, "slope -1 is negative"},
        WrongUse{"prefs set no_such_file @show.ocio --prefs @preferences.yaml", 2,
                 "no preference 'no_such_file'"},
        WrongUse{"prefs set color_space_file_path @none.ocio --prefs @preferences.yaml", 1, "none.ocio"},
        WrongUse{"prefs set color_space_file_path @show.ocio --prefs @show.ocio", 1, "show.ocio"},
        WrongUse{"space add film --lut @none.cube --prefs @preferences.yaml", 1, "none.cube"},
        WrongUse{"view @in.exr --from linear --inverse-view Tavelion.sRGB --screenshot @out.png", 2,
                 "--from and --inverse-view cannot be combined"},
        WrongUse{"view @in.exr --inverse-view Nowhere.Nothing --screenshot @out.png", 1, "Nowhere"},
        WrongUse{"view @in.exr --display Tavelion --screenshot @out.png", 2, "--display needs --view"},
        WrongUse{"view @in.exr --view Nowhere.Nothing --screenshot @out.png", 1, "Nowhere"}));

} // namespace
