#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <lcms2.h>

#include "tests/tool/color_tag_files.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

/// Writes images with tags of their colors.
class WrittenTagsTest : public ToolTest {
protected:
    WrittenTagsTest() {
        write("in.exr", OIIO::TypeHalf);
        std::string text = "ocio_profile_version: 1\nstrictparsing: true\nroles: {scene_linear: lin}\n"
                           "displays:\n  Monitor:\n    - !<View> {name: sRGB, colorspace: Output - sRGB}\n"
                           "colorspaces:\n";
        for (const char* name :
             {"lin", "paint", "lin_srgb", "ACEScg", "Linear P3-D65", "sRGB - Texture", "Display P3 - Display",
              "Camera Rec.709", "Rec.1886 Rec.709 - Display", "Rec.2100-PQ - Display",
              "Gamma 2.2 Rec.709 - Texture", "ADX10", "Output - sRGB"})
            text += std::string("  - !<ColorSpace> {name: ") + name + "}\n";
        folder.write("show.ocio", text);
    }

    void write(const std::string& name, OIIO::TypeDesc depth, const OIIO::ImageSpec& attributes = {}) {
        Image image = make_image(2, 2, 3, depth, std::vector<float>(12, 0.5f));
        image.spec.extra_attribs = attributes.extra_attribs;
        write_image(path(name), image);
    }

    /// Converts to a color space of the config.
    void convert(const std::string& to, const std::string& output, const std::string& input = "in.exr") {
        const ToolRun result = run({"convert", path(input), path(output), "--from", "lin", "--to", to,
                                    "--config", path("show.ocio")});
        ASSERT_THAT(result, Succeeds());
    }

    unsigned int get_byte(const std::string& name, std::size_t offset) const {
        return static_cast<unsigned char>(folder.read(name).at(offset));
    }

    std::vector<float> get_chromaticities(const std::string& name, int part = 0) const {
        const OIIO::ImageSpec spec = read_image(path(name), part).spec;
        const OIIO::ParamValue* found =
            spec.find_attribute("chromaticities", OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, 8));
        const auto* xy = found ? static_cast<const float*>(found->data()) : nullptr;
        return xy ? std::vector<float>(xy, xy + 8) : std::vector<float>();
    }

    /// What the profile of the file calls itself, and what it makes of code value 0.5 of gray: the Y.
    std::pair<std::string, double> read_profile(const std::string& name) const {
        const OIIO::ImageSpec spec = read_image(path(name)).spec;
        const OIIO::ParamValue* found = spec.find_attribute("ICCProfile");
        if (!found)
            return {"none", 0};
        cmsHPROFILE profile =
            cmsOpenProfileFromMem(found->data(), static_cast<cmsUInt32Number>(found->type().numelements()));
        cmsHPROFILE xyz = cmsCreateXYZProfile();
        cmsHTRANSFORM transform =
            cmsCreateTransform(profile, TYPE_RGB_DBL, xyz, TYPE_XYZ_DBL, INTENT_RELATIVE_COLORIMETRIC, 0);
        const double gray[] = {0.5, 0.5, 0.5};
        double result[3] = {};
        cmsDoTransform(transform, gray, result, 1);
        char text[64] = "";
        cmsGetProfileInfoASCII(profile, cmsInfoDescription, "en", "US", text, sizeof text);
        cmsDeleteTransform(transform);
        cmsCloseProfile(xyz);
        cmsCloseProfile(profile);
        return {text, result[1]};
    }

    /// The data of a chunk of a PNG file with its name before and its CRC behind; empty for none.
    std::string find_chunk(const std::string& name, const std::string& type) const {
        const std::string file = folder.read(name);
        for (std::size_t at = 8; at + 12 <= file.size();) {
            std::size_t length = 0;
            for (std::size_t i = 0; i < 4; ++i)
                length = length << 8 | static_cast<unsigned char>(file[at + i]);
            if (file.compare(at + 4, 4, type) == 0)
                return file.substr(at + 4, length + 8);
            at += length + 12;
        }
        return "";
    }
};
