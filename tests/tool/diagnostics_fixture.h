#pragma once

#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "tests/tool/configs.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

/// Those of one severity.
inline std::vector<nlohmann::json> parse_diagnostics(const std::string& lines, const std::string& severity) {
    std::vector<nlohmann::json> found;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);)
        if (nlohmann::json diagnostic = nlohmann::json::parse(line); diagnostic.at("severity") == severity)
            found.push_back(diagnostic);
    return found;
}

/// A color space without its name and transform, at the end of a config.
inline constexpr char SPACE_START[] = R"(
  - !<ColorSpace>
    name: )";

/// Files with errors.
class DiagnosticFiles : public ToolTest {
protected:
    DiagnosticFiles() {
        write_image(path("in.exr"), make_image(2, 2, 3, OIIO::TypeFloat, std::vector<float>(12, 0.5f)));
        write_image(path("alpha.exr"), make_image(2, 2, 4, OIIO::TypeFloat, std::vector<float>(16, 0.5f)));
        Image white = make_image(2, 2, 3, OIIO::TypeFloat, std::vector<float>(12, 0.5f));
        white.spec.attribute("whiteLuminance", 100.0f);
        write_image(path("white.exr"), white);
        folder.write("text.exr", "this is not an image\n");
        folder.write("broken.ocio", "ocio_profile_version: 1\ncolorspaces: [\n");
        folder.write("newer.ocio", "ocio_profile_version: 2.999\n");
        folder.write("show.ocio", SHOW_CONFIG);
        folder.write("unlisted.ocio", "ocio_profile_version: 1\nroles: {default: lin}\n"
                                      "colorspaces:\n  - name: lin\ndisplays: [Monitor]\n");
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
        folder.write("strangemap.txt", "# before: {color_space: nowhere}\n"
                                       "Scan: {extensions: dpx, color_space: nowhere}\n");
    }

    void write_space(const std::string& name, const std::string& transform) {
        folder.write(name,
                     std::string(SHOW_CONFIG) + SPACE_START + "log\n    from_reference: " + transform + "\n");
    }
};
