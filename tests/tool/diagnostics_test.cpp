#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "colorio/ocio/types.h"
#include "diagnostics/code.h"
#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

/// A command line that fails, and the one error that says why; or one that works, and what it warns of.
/// "@NAME" stands for the path of a file of the test.
struct Fault {
    std::vector<std::string> arguments;
    std::string code;
    std::string file = "";    ///< "@NAME", or empty when the cause lies in no file.
    unsigned int line = 0;    ///< 0 where the cause has no line.
    std::string subject = ""; ///< Not compared when it is empty.
    unsigned int column = 0;  ///< 0 where the cause has no column.
    /// A command that works nevertheless says so with a "warning" or a "note".
    std::string severity = "error";
};

const std::string SPACES = R"(
  - !<ColorSpace>
    name: )";

class DiagnosticOf : public ToolTest, public testing::WithParamInterface<Fault> {
protected:
    DiagnosticOf() {
        write_image(path("in.exr"), make_image(2, 2, 3, OIIO::TypeFloat, std::vector<float>(12, 0.5f)));
        write_image(path("alpha.exr"), make_image(2, 2, 4, OIIO::TypeFloat, std::vector<float>(16, 0.5f)));
        Image white = make_image(2, 2, 3, OIIO::TypeFloat, std::vector<float>(12, 0.5f));
        white.spec.attribute("whiteLuminance", 100.0f);
        write_image(path("white.exr"), white);
        folder.write("text.exr", "this is not an image\n");
        folder.write("broken.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
        folder.write("newer.ocio", "ocio_profile_version: 2.999\n");
        folder.write("show.ocio", SHOW_CONFIG);
        write_space("lost.ocio", "!<FileTransform> {src: \"artist's film.cube\"}");
        write_space("damaged.ocio", "!<FileTransform> {src: cut.spi1d}");
        write_space("cycle.ocio", "!<ColorSpaceTransform> {src: lin, dst: log}");
        write_space("flat.ocio", "!<MatrixTransform> {matrix: [0,0,0,0, 0,0,0,0, 0,0,0,0, 0,0,0,1]}");
        write_space("variable.ocio", "!<FileTransform> {src: $QB_TEST_UNSET}");
        folder.write("luts/cut.spi1d", "Version 1\nFrom 0 1\nLength 3\nComponents 1\n{\n0\n");
        folder.write("bad.cc", "<ColorCorrection>\n<SOPNode>\n</ColorCorrection>\n");
        folder.write("two.cc",
                     "<ColorCorrection id='a'><SOPNode><Slope>1 1</Slope></SOPNode></ColorCorrection>\n");
        folder.write("negative.cc",
                     "<ColorCorrection id='a'><SOPNode><Slope>-1 1 1</Slope></SOPNode></ColorCorrection>\n");
        folder.write("none.cc", "<Other/>\n");
        folder.write("many.ccc",
                     "<ColorCorrectionCollection><ColorCorrection id='a'/><ColorCorrection id='b'/>"
                     "</ColorCorrectionCollection>\n");
        folder.write("broken.yaml", "file_type: qb_colorio preferences\nspace: [\n");
        write_irregular_files();
        write_odd_configs();
        write_odd_corrections();
        write_preferences();
        folder.write("script.txt", "# a comment\nlayout sideways\n");
    }

    void write_irregular_files() {
        if (mkfifo(path("pipe").c_str(), 0600) != 0)
            throw std::runtime_error("cannot make a pipe");
        std::filesystem::create_symlink(path("loop.cc"), path("loop.cc"));
        folder.write("large.yaml", std::string((8 << 20) + 1, '#'));
    }

    void write_odd_configs() {
        std::string bomb = "a0: &a0 [1, 1, 1, 1, 1, 1, 1, 1, 1, 1]\n";
        for (int i = 1; i < 7; ++i) {
            const std::string inner = "*a" + std::to_string(i - 1);
            bomb += "a" + std::to_string(i) + ": &a" + std::to_string(i) + " [";
            for (int repetition = 0; repetition < 10; ++repetition)
                bomb += (repetition == 0 ? "" : ", ") + inner;
            bomb += "]\n";
        }
        folder.write("bomb.ocio", bomb + SHOW_CONFIG);
        write_space("looked.ocio", "!<LookTransform> {src: lin, dst: lin, looks: nolook}");
        write_space("powerless.ocio", "!<ExponentTransform> {value: [0, 1, 1, 1]}");
        // The file has no inverse, but back to lin it is applied forward.
        folder.write("luts/flat.spimtx", "0 0 0 0\n0 1 0 0\n0 0 1 0\n");
        write_space("innocent.ocio",
                    "!<GroupTransform> {children: [!<ExponentTransform> {value: [0, 1, 1, 1]}, "
                    "!<FileTransform> {src: flat.spimtx, direction: inverse}]}");
        write_space("idless.ocio", "!<FileTransform> {src: shots.ccc, cccid: c}");
        write_space("graded.ocio",
                    "!<GroupTransform>\n      children:\n"
                    "        - !<FileTransform> {src: shots.ccc, cccid: a}\n"
                    "        - !<MatrixTransform> {matrix: [0,0,0,0, 0,0,0,0, 0,0,0,0, 0,0,0,1]}");
        write_space("long.ocio", "!<FileTransform> {src: long.spi1d}");
        folder.write("luts/long.spi1d",
                     "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n" + std::string(80, '1') + "\n}\n");
        std::string unknown_role = SHOW_CONFIG;
        unknown_role.replace(unknown_role.find("texture_paint: half_light"), 25, "texture_paint: nowhere");
        folder.write("role.ocio", unknown_role);
    }

    static std::string make_correction(const std::string& id) {
        return "<ColorCorrection id='" + id +
               "'><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
               "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection>\n";
    }

    void write_odd_corrections() {
        const auto write = [&](const char* name, const std::string& corrections) {
            folder.write(name,
                         "<ColorCorrectionCollection>\n" + corrections + "</ColorCorrectionCollection>\n");
        };
        write("luts/shots.ccc", make_correction("a") + make_correction("b"));
        write("twice.ccc", make_correction("a") + make_correction("a"));
        write("open.ccc", make_correction("a") + "<ColorCorrection id='b'>\n");
        folder.write("more.cc", "<ColorCorrection id='a'><Grain>1</Grain></ColorCorrection>\n");
    }

    void write_preferences() {
        const auto write = [&](const char* name, const std::string& entries) {
            folder.write(name, "file_type: qb_colorio preferences\n" + entries);
        };
        write("lost.yaml", "color_management:\n  space: [s1, " + path("lost.spi1d") +
                               ", 8, 0, 0.0, 1.0, 0.0, \"\", \"\"]\n");
        write("empty.yaml", "color_management:\n  space: [s2, \"\", 8, 0, 0.0, 1.0, 0.0, \"\", \"\"]\n");
        const std::string numbers = ", 1.0, 1.0, 1.0, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0, 1.0]\n";
        write("own.yaml", "color_management:\n  CDL: [own, " + path("open.ccc") + ", b" + numbers);
        write("library.yaml", "cdl_library_file_path: " + path("open.ccc") + "\n");
        write("nolibrary.yaml", "cdl_library_file_path: " + path("missing.ccc") + "\n");
        for (const char* name : {"badmap", "halfmap", "strangemap", "nomap"})
            write((std::string(name) + ".yaml").c_str(),
                  "color_space_by_extension_file_path: " + path(std::string(name) + ".txt") +
                      "\nuse_color_space_by_extension_file: 1\n");
        folder.write("badmap.txt",
                     "Scan: {extensions: dpx, color_space: linear}\nGrade: {extensions: [unclosed\n");
        folder.write("halfmap.txt", "Scan: []\n");
        folder.write("strangemap.txt", "Grade: {extensions: cin, color_space: linear}\n"
                                       "Scan: {extensions: dpx, color_space: nowhere}\n");
    }

    void write_space(const std::string& name, const std::string& transform) {
        folder.write(name, SHOW_CONFIG + SPACES + "log\n    from_reference: " + transform + "\n");
    }

    std::string expand(const std::string& text) const {
        return text.substr(0, 1) == "@" ? path(text.substr(1)) : text;
    }
    std::vector<std::string> get_arguments() const {
        std::vector<std::string> arguments;
        for (const std::string& argument : GetParam().arguments)
            arguments.push_back(expand(argument));
        return arguments;
    }
};

/// Those of one severity.
std::vector<json> parse_diagnostics(const std::string& lines, const std::string& severity) {
    std::vector<json> found;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);)
        if (json diagnostic = json::parse(line); diagnostic.at("severity") == severity)
            found.push_back(diagnostic);
    return found;
}

TEST_P(DiagnosticOf, TheCauseIsOneInJsonAndInText) {
    const Fault& fault = GetParam();
    std::vector<std::string> arguments = get_arguments();
    testing::internal::CaptureStdout();
    const ToolRun text = run(arguments);
    arguments.insert(arguments.begin(), "--json-diagnostics");
    const ToolRun as_json = run(arguments);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << "printed past the console";
    EXPECT_EQ(as_json.code, text.code);
    const bool fails = fault.severity == "error";
    EXPECT_EQ(text.code, fails ? (fault.code == "usage" ? 2 : 1) : 0) << text.err;
    EXPECT_EQ(parse_diagnostics(as_json.err, "error").size(), fails ? 1u : 0u) << as_json.err;

    const std::vector<json> all = parse_diagnostics(as_json.err, fault.severity);
    ASSERT_EQ(all.size(), 1u) << as_json.err;
    const json& found = all.front();
    EXPECT_EQ(found.at("code"), fault.code) << found;
    EXPECT_EQ(found.at("file"), expand(fault.file)) << found;
    EXPECT_EQ(found.at("line"), fault.line) << found;
    EXPECT_EQ(found.at("column"), fault.column) << found;
    if (!fault.subject.empty()) {
        EXPECT_EQ(found.at("subject"), fault.subject) << found;
    }
    EXPECT_EQ(found.size(), 8u) << found;

    if (fails) {
        EXPECT_THAT(text.err, HasSubstr("colorio: error: "));
        EXPECT_EQ(text.err.find("colorio: error: "), text.err.rfind("colorio: error: ")) << text.err;
    }
    const std::string message = found.at("message");
    std::string place;
    if (fault.line != 0) {
        place = expand(fault.file) + ":" + std::to_string(fault.line) + ":";
        if (fault.column != 0)
            place += std::to_string(fault.column) + ":";
        place += " ";
    }
    EXPECT_THAT(text.err, HasSubstr(place + message));
    if (const std::string hint = found.at("hint"); !hint.empty()) {
        EXPECT_THAT(text.err, HasSubstr("\nhint: " + hint + "\n"));
    }
}

std::vector<std::string> convert(std::vector<std::string> more) {
    more.insert(more.begin(), {"convert", "@in.exr", "@out.exr"});
    return more;
}

const std::vector<std::string> NUMBERS = {"a=1,1,1/0,0,0/1,1,1/1"};

const Fault FAULTS[] = {
    // configs
    {{"list", "--config", "@missing.ocio"}, "config-missing", "@missing.ocio"},
    {{"list", "--config", "@luts"}, "file-not-regular", "@luts"},
    {{"list", "--config", "@broken.ocio"}, "config-invalid", "@broken.ocio", 3, "", 1},
    {{"list", "--config", "@newer.ocio"}, "config-newer", "@newer.ocio"},
    {{"explain", "lin", "log", "--config", "@lost.ocio"},
     "lut-missing",
     "artist's film.cube",
     0,
     "artist's film.cube"},
    {{"explain", "lin", "log", "--config", "@damaged.ocio"}, "lut-damaged", "@luts/cut.spi1d"},
    {{"explain", "lin", "log", "--config", "@cycle.ocio"}, "config-cycle", "@cycle.ocio", 0, "log"},
    {{"explain", "log", "lin", "--config", "@flat.ocio"}, "matrix-singular"},
    {{"list", "--config", "@bomb.ocio"}, "config-too-complex", "@bomb.ocio"},
    {{"list", "--config", "@pipe"}, "file-not-regular", "@pipe"},
    {{"list", "--config", "@role.ocio"}, "config-invalid", "@role.ocio"},
    {{"explain", "lin", "log", "--config", "@looked.ocio"}, "look-unknown", "@looked.ocio", 0, "nolook"},
    {{"explain", "log", "lin", "--config", "@powerless.ocio"}, "conversion-impossible"},
    {{"explain", "log", "lin", "--config", "@innocent.ocio"}, "conversion-impossible"},
    {{"explain", "lin", "log", "--config", "@innocent.ocio"}, "matrix-singular", "@luts/flat.spimtx"},
    {{"explain", "log", "lin", "--config", "@graded.ocio"}, "matrix-singular"},
    {{"explain", "lin", "log", "--config", "@idless.ocio"}, "cdl-id-missing", "@luts/shots.ccc", 0, "c"},
    {{"explain", "lin", "log", "--config", "@long.ocio"}, "lut-damaged", "@luts/long.spi1d", 7},
    {{"explain", "lin", "log", "--config", "@variable.ocio"},
     "config-variable",
     "$QB_TEST_UNSET",
     0,
     "QB_TEST_UNSET"},
    // names
    {convert({"--from", "lineer", "--to", "sRGB"}), "color-space-unknown", "", 0, "lineer"},
    {convert({"--from", "sRGB", "--to", "lineer"}), "color-space-unknown", "", 0, "lineer"},
    {convert({"--view", "Tavelion.sRGV"}), "view-unknown", "", 0, "Tavelion.sRGV"},
    {convert({"--display", "Tavelin", "--view", "sRGB"}), "view-unknown", "", 0, "Tavelin.sRGB"},
    {convert({"--view", "Monitor.Film", "--strict", "--config", "@show.ocio"}), "color-space-assumed",
     "@in.exr"},
    {{"explain", "sRGB", "lineer"}, "color-space-unknown", "", 0, "lineer"},
    {convert({"--from", "sRGB", "--named-transform", "curve"}), "named-transform-unknown", "", 0, "curve"},
    {{"shader", "--from", "lineer", "--to", "sRGB", "-o", "@out"}, "color-space-unknown", "", 0, "lineer"},
    // images
    {{"convert", "@missing.exr", "@out.exr", "--from", "sRGB", "--to", "linear"},
     "image-unreadable",
     "@missing.exr"},
    {{"convert", "@text.exr", "@out.exr", "--from", "sRGB", "--to", "linear"},
     "image-unreadable",
     "@text.exr"},
    {{"convert", "@in.exr", "@out.xyz", "--from", "sRGB", "--to", "linear"}, "image-unsupported", "@out.xyz"},
    {{"convert", "@in.exr", "@no/out.exr", "--from", "sRGB", "--to", "linear"},
     "image-unwritable",
     "@no/out.exr"},
    {convert({"--from", "sRGB", "--to", "linear", "-d", "uint8"}), "image-unsupported", "@out.exr"},
    {convert({"--from", "sRGB", "--to", "linear", "--layers", "diffuse"}), "layer-unknown", "@in.exr", 0,
     "diffuse"},
    {{"view", "@missing.exr", "--screenshot", "@s.png"}, "image-unreadable", "@missing.exr"},
    {{"convert", "@alpha.exr", "@out.jpg", "--from", "sRGB", "--to", "linear"},
     "channels-dropped",
     "@out.jpg",
     0,
     "A",
     0,
     "note"},
    {{"convert", "@white.exr", "@out.exr", "--from", "sRGB", "--to", "linear"},
     "metadata-dropped",
     "@out.exr",
     0,
     "whiteLuminance",
     0,
     "note"},
    // command lines
    {{}, "usage"},
    {{"lst"}, "usage"},
    {{"list", "--verison"}, "usage"},
    {{"list", "nothing"}, "usage"},
    {convert({}), "usage"},
    {convert({"--to", "linear", "--view", "Tavelion.sRGB"}), "usage"},
    {convert({"--display", "Tavelion"}), "usage"},
    {convert({"--to", "linear", "-d", "uint7"}), "usage"},
    {convert({"--to", "linear", "--threads", "0"}), "usage"},
    {convert({"--to", "linear", "--frames", "1-3"}), "usage"},
    {{"convert", "@a.%04d.exr", "@b.%04d.exr", "--to", "linear", "--from", "sRGB", "--frames", "1-"},
     "usage"},
    {{"convert", "@a.%04d.exr", "@b.exr", "--to", "linear"}, "usage"},
    {{"explain", "sRGB"}, "usage"},
    {{"explain", "sRGB", "linear", "--pixel", "1,2"}, "usage"},
    {{"shader", "--from", "linear", "--to", "sRGB", "-o", "@out", "--glsl", "5"}, "usage"},
    {{"view", "@in.exr", "--size", "0x0"}, "usage"},
    {{"view", "@in.exr", "--zoom", "0"}, "usage"},
    {{"view", "@in.exr", "--layout", "sideways"}, "usage"},
    // viewers
    {{"view", "@in.exr", "--cdl", "own", "--screenshot", "@s.png"}, "cdl-unknown", "", 0, "own"},
    {{"view", "@in.exr", "--script", "@pipe", "--no-window"}, "file-not-regular", "@pipe"},
    {{"view", "@in.exr", "--script", "@missing.txt", "--no-window"}, "file-missing", "@missing.txt"},
    {{"view", "@in.exr", "--script", "@script.txt", "--no-window"}, "script-failed", "@script.txt", 2},
    // sequences
    {{"convert", "@a.%04d.exr", "@b.%04d.exr", "--to", "linear", "--from", "sRGB", "--frames", "7"},
     "frames-missing",
     "@a.%04d.exr"},
    // shaders
    {{"shader", "--from", "linear", "--to", "linear", "-o", "@out"}, "shader-impossible"},
    {{"shader", "--from", "linear", "--to", "sRGB", "-o", "@in.exr"}, "file-unwritable", "@in.exr"},
    // CDLs
    {{"cdl", "list", "@missing.cc"}, "file-missing", "@missing.cc"},
    {{"cdl", "list", "@luts"}, "file-not-regular", "@luts"},
    {{"cdl", "list", "@bad.cc"}, "xml-malformed", "@bad.cc", 3, "", 1},
    {{"cdl", "list", "@two.cc"}, "cdl-invalid", "@two.cc"},
    {{"cdl", "list", "@none.cc"}, "cdl-invalid", "@none.cc"},
    {{"cdl", "show", "@many.ccc:c"}, "cdl-id-missing", "@many.ccc", 0, "c"},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@missing.cc"}), "file-missing", "@missing.cc"},
    {{"cdl", "list", "@pipe"}, "file-not-regular", "@pipe"},
    {{"cdl", "list", "@loop.cc"}, "file-unreadable", "@loop.cc"},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@pipe"}), "file-not-regular", "@pipe"},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@bad.cc"}), "xml-malformed", "@bad.cc", 3, "", 1},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@negative.cc"}), "cdl-invalid", "@negative.cc"},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@many.ccc:c"}), "cdl-id-missing", "@many.ccc", 0,
     "c"},
    {{"cdl", "write", "@x.cc", "--cdl", "a=1"}, "usage"},
    {{"cdl", "write", "@x.cc", "--cdl", "a=1,1,1/0,0,0/0.04,1,1/1"}, "cdl-invalid", "@x.cc"},
    {{"cdl", "write", "@no/x.cc", "--cdl", NUMBERS[0]}, "file-unwritable", "@no/x.cc"},
    {{"cdl", "write", "@no/x.cc", "--exact", "--cdl", NUMBERS[0]}, "file-unwritable", "@no/x.cc"},
    {{"cdl", "add", "a"}, "usage"},
    {{"cdl", "add", "a", "@missing.cc"}, "file-missing", "@missing.cc"},
    {{"cdl", "remove", "a"}, "usage-refused"},
    // custom color spaces
    {{"space", "add", "a"}, "usage"},
    {{"space", "add", "a", "--lut", "@missing.cube"}, "file-missing", "@missing.cube"},
    {{"space", "add", "linear", "--lut", "@text.exr"}, "name-duplicate"},
    {{"space", "add", "a", "--lut", "@luts/cut.spi1d"}, "lut-damaged", "@luts/cut.spi1d"},
    {{"space", "add", "a", "--lut", "@pipe"}, "file-not-regular", "@pipe"},
    {{"space", "add", "a", "--cdl", "@twice.ccc:a"}, "cdl-id-repeated", "@twice.ccc"},
    {{"space", "remove", "a"}, "usage-refused"},
    // format associations
    {{"formats", "set", "Nope", "--space", "linear"}, "format-unknown", "", 0, "Nope"},
    {{"formats", "set", "Targa"}, "usage"},
    {{"formats", "set", "Targa", "--space", "lineer"}, "color-space-unknown", "", 0, "lineer"},
    {{"formats", "add", "Targa", "--extensions", "x", "--space", "linear"}, "name-duplicate"},
    {{"formats", "add", "Camera", "--extensions", ",", "--space", "linear"}, "usage"},
    {{"formats", "remove", "Targa"}, "usage-refused"},
    // preferences
    {{"list", "--prefs", "@pipe"}, "file-not-regular", "@pipe"},
    {{"list", "--prefs", "@large.yaml"}, "file-too-large", "@large.yaml"},
    {{"list", "--prefs", "@missing.yaml"}, "file-missing", "@missing.yaml"},
    {{"list", "--prefs", "@text.exr"}, "preferences-invalid", "@text.exr", 1, "", 1},
    {{"list", "--prefs", "@broken.yaml"}, "preferences-invalid", "@broken.yaml", 3, "", 1},
    // the user's own files: everything else works without them
    {{"list", "--prefs", "@lost.yaml"}, "lut-missing", "@lost.spi1d", 0, "s1", 0, "warning"},
    {{"explain", "s1", "linear", "--prefs", "@lost.yaml"}, "lut-missing", "@lost.spi1d", 0, "s1"},
    {{"list", "--prefs", "@empty.yaml"}, "custom-color-space-invalid", "", 0, "s2", 0, "warning"},
    {{"list", "cdls", "--prefs", "@own.yaml"}, "xml-malformed", "@open.ccc", 4, "own", 1, "warning"},
    {{"view", "@in.exr", "--cdl", "own", "--screenshot", "@s.png", "--prefs", "@own.yaml"},
     "xml-malformed",
     "@open.ccc",
     4,
     "own",
     1},
    {{"list", "--json", "--prefs", "@library.yaml"}, "xml-malformed", "@open.ccc", 4, "", 1, "warning"},
    {{"list", "--prefs", "@nolibrary.yaml"}, "file-missing", "@missing.ccc", 0, "", 0, "warning"},
    {{"formats", "list", "--prefs", "@badmap.yaml"}, "mapping-malformed", "@badmap.txt", 3, "", 1, "warning"},
    {{"formats", "list", "--prefs", "@halfmap.yaml"},
     "mapping-entry-invalid",
     "@halfmap.txt",
     1,
     "Scan",
     0,
     "warning"},
    {{"formats", "list", "--prefs", "@nomap.yaml"}, "file-missing", "@nomap.txt", 0, "", 0, "warning"},
    {{"list", "--prefs", "@strangemap.yaml"},
     "mapping-color-space-unknown",
     "@strangemap.txt",
     2,
     "nowhere",
     0,
     "warning"},
    // what goes well, but not as one may expect
    {{"explain", "SRGB", "linear"}, "name-substituted", "", 0, "SRGB", 0, "note"},
    {convert({"--to", "sRGB"}), "color-space-chosen", "", 0, "", 0, "note"},
    {convert({"--from", "sRGB", "--to", "sRGB"}), "colors-unchanged", "", 0, "", 0, "note"},
    {{"cdl", "write", "@x.cc", "--cdl", "a=1.15,1,1/0,0,0/1,1,1/1"},
     "cdl-rounded",
     "@x.cc",
     0,
     "",
     0,
     "warning"},
    {{"cdl", "list", "@more.cc"}, "cdl-element-ignored", "@more.cc", 0, "a", 0, "warning"},
};

/// Codes that no command line of this table provokes.
const std::map<std::string, std::string> WITHOUT_ROW = {
    {"cdl-copied", "CdlCopied below: the command changes what the next one finds"},
    {"config-builtin", "three system folders for temporary files would have to be unusable"},
    {"lut-unwritable", "LutUnwritable below: the cache folder is prepared"},
    {"temporary-folder", "TemporaryFolder below: the cache folder is prepared"},
    {"role-unknown", "RoleUnknown below: only version 2 has roles of inactive color spaces"},
    {"view-transform-unknown", "a config that names one is refused as a whole"},
    {"color-space-inactive", "v2/config_features_test.cpp: only version 2 has inactive color spaces"},
    {"reference-changed", "v2/config_features_test.cpp: only version 2 has display-referred color spaces"},
    {"preference-changed", "preferences_set_test.cpp: the command changes what the next one finds"},
    {"home-missing", "the system may know the home folder without a variable"},
    {"system-failure", "scarce_system_test.cpp: the system has to refuse threads"},
    {"gpu-unavailable", "depends on the machine"},
    {"display-missing", "viewer/view_command_test.cpp: the viewer has tests of its own"},
    {"gpu-limit", "depends on the machine"},
    {"shader-invalid", "only a driver with errors refuses a shader of the module"},
    {"image-adapted", "convert_keeps_test.cpp: needs image files with special content"},
    {"format-shadowed", "formats_test.cpp: needs two commands"},
    {"out-of-memory", "depends on the machine"},
    {"library-failure", "stands for what is not known"},
};

TEST(DiagnosticRows, HoldEveryCodeThatACommandLineCanProvoke) {
    std::set<std::string> with_row;
    for (const Fault& fault : FAULTS)
        with_row.insert(fault.code);
    for (const diagnostics::CodeInfo& info : diagnostics::get_codes()) {
        const std::string name(info.name);
        EXPECT_NE(with_row.count(name), WITHOUT_ROW.count(name)) << name;
    }
    EXPECT_EQ(
        with_row.size() + WITHOUT_ROW.size(),
        static_cast<size_t>(std::distance(diagnostics::get_codes().begin(), diagnostics::get_codes().end())));
}

std::string name_row(const testing::TestParamInfo<Fault>& info) {
    std::string name = std::to_string(info.index);
    for (const std::string& argument : info.param.arguments) {
        name += '_';
        for (const char c : argument)
            if (std::isalnum(static_cast<unsigned char>(c)))
                name += c;
    }
    return name;
}

class Diagnostics : public ToolTest {
protected:
    json find_one(const ToolRun& result, const std::string& severity) {
        const std::vector<json> found = parse_diagnostics(result.err, severity);
        EXPECT_EQ(found.size(), 1u) << result.err;
        return found.empty() ? json::object() : found.front();
    }
};

TEST_F(Diagnostics, LutUnwritable) {
    EXPECT_THAT(run({"list"}), Succeeds());
    std::string lut;
    for (const auto& entry : std::filesystem::directory_iterator(path("cache/qb_colorio/luts")))
        lut = entry.path().string();
    std::filesystem::remove(lut);
    folder.write("cache/qb_colorio/luts/" + std::filesystem::path(lut).filename().string() + "/file",
                 "in the way");
    const json error = find_one(run({"--json-diagnostics", "list"}), "error");
    EXPECT_EQ(error.at("code"), "lut-unwritable");
    EXPECT_EQ(error.at("file"), lut);
}

TEST_F(Diagnostics, CdlCopied) {
    folder.write("a.cc", "<ColorCorrection id='a'><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset>"
                         "<Power>1 1 1</Power></SOPNode></ColorCorrection>\n");
    const json note = find_one(run({"--json-diagnostics", "cdl", "add", "a", path("a.cc") + ":a"}), "note");
    EXPECT_EQ(note.at("code"), "cdl-copied");
    EXPECT_EQ(note.at("file"), path("a.cc"));
}

TEST_F(Diagnostics, TemporaryFolder) {
    folder.write("cache", "a file, not a folder");
    const json note = find_one(run({"--json-diagnostics", "list"}), "note");
    EXPECT_EQ(note.at("code"), "temporary-folder");
}

TEST_F(Diagnostics, RoleUnknown) {
    if (ocio::get_version()[0] == '1')
        GTEST_SKIP() << "1.x has no inactive color spaces";
    std::string config = SHOW_CONFIG;
    config.replace(config.find("version: 1"), 10, "version: 2");
    config.insert(config.find("  texture_paint"), "  default: lin\n");
    config.insert(config.find("colorspaces:"), "inactive_colorspaces: [half_light]\n");
    folder.write("show.ocio", config);
    const json error = find_one(
        run({"--json-diagnostics", "explain", "texture_paint", "lin", "--config", path("show.ocio")}),
        "error");
    EXPECT_EQ(error.at("code"), "role-unknown");
    EXPECT_EQ(error.at("subject"), "texture_paint");
}

TEST_F(Diagnostics, OfAConfigThatOpenColorIORefuses) {
    if (ocio::get_version()[0] == '1')
        GTEST_SKIP() << "1.x reads version 1 only";
    std::string config = SHOW_CONFIG;
    config.replace(config.find("version: 1"), 10, "version: 2");
    config.replace(config.find("texture_paint: half_light"), 25, "default: lin\n  texture_paint: nowhere");
    folder.write("show.ocio", config);
    const json error = find_one(run({"--json-diagnostics", "list", "--config", path("show.ocio")}), "error");
    EXPECT_EQ(error.at("code"), "config-invalid");
    EXPECT_EQ(error.at("file"), path("show.ocio"));
    EXPECT_EQ(error.at("subject"), "nowhere");
}

TEST_F(Diagnostics, OfTheConfigThatTheEnvironmentNames) {
    ocio.set(path("missing.ocio"));
    json error = find_one(run({"--json-diagnostics", "list"}), "error");
    EXPECT_EQ(error.at("code"), "config-missing");
    EXPECT_EQ(error.at("file"), path("missing.ocio"));
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    ocio.set(path("pipe"));
    error = find_one(run({"--json-diagnostics", "list"}), "error");
    EXPECT_EQ(error.at("code"), "file-not-regular");
    EXPECT_EQ(error.at("file"), path("pipe"));
}

INSTANTIATE_TEST_SUITE_P(Faults, DiagnosticOf, testing::ValuesIn(FAULTS), name_row);

} // namespace
