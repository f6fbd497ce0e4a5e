#pragma once

#include <string>
#include <vector>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

/// Converts images with chosen channels, whose colors stay as they are.
class ConvertChannels : public ToolTest {
protected:
    /// Channels of 0.5 each, by their names; alpha is 1.
    void write_channels(const std::string& name, const std::vector<std::string>& channels,
                        OIIO::TypeDesc type = OIIO::TypeFloat) const {
        const int count = static_cast<int>(channels.size());
        Image image = make_image(2, 2, count, type, std::vector<float>(channels.size() * 4, 0.5f));
        image.spec.channelnames = channels;
        image.spec.alpha_channel = image.spec.channelindex("A");
        image.spec.z_channel = image.spec.channelindex("Z");
        if (image.spec.alpha_channel >= 0)
            for (int pixel = 0; pixel < 4; ++pixel)
                image.values[static_cast<std::size_t>(pixel * count + image.spec.alpha_channel)] = 1.0f;
        write_image(path(name), image);
    }

    ToolRun convert(const std::string& output, const std::vector<std::string>& more = {}) {
        std::vector<std::string> line = {"convert", path("in.exr"), path(output), "--from",
                                         "linear",  "--to",         "linear"};
        line.insert(line.end(), more.begin(), more.end());
        return run(line);
    }
};
