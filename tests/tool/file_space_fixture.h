#pragma once

#include <string>
#include <vector>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

class FileSpaceTest : public ToolTest {
protected:
    /// Writes a gray pixel of `depth` with the attributes of `spec`.
    void write(const std::string& name, OIIO::TypeDesc depth, float gray,
               const OIIO::ImageSpec& attributes = {}) {
        Image image = make_image(1, 1, 3, depth, {gray, gray, gray});
        image.spec.extra_attribs = attributes.extra_attribs;
        write_image(path(name), image);
    }

    ToolRun explain(const std::string& name, std::vector<std::string> more = {}) {
        std::vector<std::string> arguments = {"explain", "--image", path(name), "--why"};
        more.insert(more.begin(), arguments.begin(), arguments.end());
        return run(more);
    }

    /// A config of version 1 with these color spaces; "lin" is scene_linear.
    void write_config(const std::vector<std::string>& spaces, const std::string& roles = "") {
        std::string text = "ocio_profile_version: 1\nstrictparsing: true\nroles:\n  scene_linear: lin\n" +
                           roles +
                           "displays:\n  M:\n    - !<View> {name: V, colorspace: lin}\n"
                           "colorspaces:\n  - !<ColorSpace> {name: lin}\n";
        for (const std::string& space : spaces)
            text += "  - !<ColorSpace> {name: " + space + "}\n";
        folder.write("show.ocio", text);
    }

    std::vector<std::string> with_config() const { return {"lin", "--config", path("show.ocio")}; }
};
