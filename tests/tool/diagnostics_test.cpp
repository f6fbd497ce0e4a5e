#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

/// A command line that fails, and the one error that says why. "@NAME" stands for the path of a file of the
/// test.
struct Fault {
    std::vector<std::string> arguments;
    std::string code;
    std::string file = "";    ///< "@NAME", or empty when the cause lies in no file.
    unsigned int line = 0;    ///< 0 where the cause has no line.
    std::string subject = ""; ///< Not compared when it is empty.
};

const std::string SPACES = R"(
  - !<ColorSpace>
    name: )";

class DiagnosticOf : public ToolTest, public testing::WithParamInterface<Fault> {
protected:
    DiagnosticOf() {
        write_image(path("in.exr"), make_image(2, 2, 3, OIIO::TypeFloat, std::vector<float>(12, 0.5f)));
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

std::vector<json> parse_errors(const std::string& lines) {
    std::vector<json> errors;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);)
        if (json diagnostic = json::parse(line); diagnostic.at("severity") == "error")
            errors.push_back(diagnostic);
    return errors;
}

TEST_P(DiagnosticOf, TheCauseIsOneInJsonAndInText) {
    const Fault& fault = GetParam();
    std::vector<std::string> arguments = get_arguments();
    const ToolRun text = run(arguments);
    arguments.insert(arguments.begin(), "--json-diagnostics");
    const ToolRun as_json = run(arguments);
    EXPECT_EQ(as_json.code, text.code);
    EXPECT_EQ(text.code, fault.code == "usage" ? 2 : 1) << text.err;

    const std::vector<json> errors = parse_errors(as_json.err);
    ASSERT_EQ(errors.size(), 1u) << as_json.err;
    const json& error = errors.front();
    EXPECT_EQ(error.at("code"), fault.code) << error;
    EXPECT_EQ(error.at("file"), expand(fault.file)) << error;
    EXPECT_EQ(error.at("line"), fault.line) << error;
    if (!fault.subject.empty()) {
        EXPECT_EQ(error.at("subject"), fault.subject) << error;
    }
    EXPECT_EQ(error.size(), 8u) << error;

    EXPECT_THAT(text.err, HasSubstr("colorio: error: "));
    EXPECT_EQ(text.err.find("colorio: error: "), text.err.rfind("colorio: error: ")) << text.err;
    EXPECT_THAT(text.err, HasSubstr(std::string(error.at("message"))));
    if (const std::string hint = error.at("hint"); !hint.empty()) {
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
    {{"list", "--config", "@broken.ocio"}, "config-invalid", "@broken.ocio"},
    {{"list", "--config", "@newer.ocio"}, "config-newer", "@newer.ocio"},
    {{"explain", "lin", "log", "--config", "@lost.ocio"},
     "lut-missing",
     "artist's film.cube",
     0,
     "artist's film.cube"},
    {{"explain", "lin", "log", "--config", "@damaged.ocio"}, "lut-damaged", "@luts/cut.spi1d"},
    {{"explain", "lin", "log", "--config", "@cycle.ocio"}, "config-cycle"},
    {{"explain", "log", "lin", "--config", "@flat.ocio"}, "matrix-singular"},
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
    {convert({"--view", "Monitor.Film", "--config", "@show.ocio"}), "color-space-unknown", "@in.exr"},
    {{"explain", "sRGB", "lineer"}, "color-space-unknown", "", 0, "lineer"},
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
    {{"view", "@missing.exr", "--screenshot", "@s.png"}, "image-unreadable", "@missing.exr"},
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
    // shaders
    {{"shader", "--from", "linear", "--to", "linear", "-o", "@out"}, "gpu-unavailable"},
    {{"shader", "--from", "linear", "--to", "sRGB", "-o", "@in.exr"}, "file-unwritable", "@in.exr"},
    // CDLs
    {{"cdl", "list", "@missing.cc"}, "file-missing", "@missing.cc"},
    {{"cdl", "list", "@luts"}, "file-not-regular", "@luts"},
    {{"cdl", "list", "@bad.cc"}, "xml-malformed", "@bad.cc", 3},
    {{"cdl", "list", "@two.cc"}, "cdl-invalid", "@two.cc"},
    {{"cdl", "list", "@none.cc"}, "cdl-invalid", "@none.cc"},
    {{"cdl", "show", "@many.ccc:c"}, "cdl-id-missing", "@many.ccc", 0, "c"},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@missing.cc"}), "file-missing", "@missing.cc"},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@bad.cc"}), "xml-malformed", "@bad.cc", 3},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@negative.cc"}), "cdl-invalid", "@negative.cc"},
    {convert({"--from", "sRGB", "--to", "linear", "--cdl", "@many.ccc:c"}), "cdl-id-missing", "@many.ccc", 0,
     "c"},
    {{"cdl", "write", "@x.cc", "--cdl", "a=1"}, "usage"},
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
    {{"space", "remove", "a"}, "usage-refused"},
    // format associations
    {{"formats", "set", "Nope", "--space", "linear"}, "format-unknown", "", 0, "Nope"},
    {{"formats", "set", "Targa"}, "usage"},
    {{"formats", "set", "Targa", "--space", "lineer"}, "color-space-unknown", "", 0, "lineer"},
    {{"formats", "add", "Targa", "--extensions", "x", "--space", "linear"}, "name-duplicate"},
    {{"formats", "add", "Camera", "--extensions", ",", "--space", "linear"}, "usage"},
    {{"formats", "remove", "Targa"}, "usage-refused"},
    // preferences
    {{"list", "--prefs", "@missing.yaml"}, "file-missing", "@missing.yaml"},
    {{"list", "--prefs", "@text.exr"}, "preferences-invalid", "@text.exr", 1},
    {{"list", "--prefs", "@broken.yaml"}, "preferences-invalid", "@broken.yaml", 3},
};

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

INSTANTIATE_TEST_SUITE_P(Faults, DiagnosticOf, testing::ValuesIn(FAULTS), name_row);

} // namespace
