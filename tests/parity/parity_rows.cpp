#include "tests/parity/parity_rows.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"

namespace {

using Color = std::array<float, 4>;

constexpr float ALPHA = 0.5f;

constexpr float GRAYS[] = {-2.0f, -0.5f,   -0.125f, -0.01f, 0.0f,   1e-6f,  1e-4f,  0.002f, 0.0031f,
                           0.02f, 0.0404f, 0.0405f, 0.09f,  0.18f,  0.214f, 0.39f,  0.46f,  0.5f,
                           0.67f, 0.75f,   0.9f,    0.999f, 1.0f,   1.001f, 1.125f, 1.5f,   2.0f,
                           4.0f,  8.5f,    16.0f,   65.0f,  150.0f, 1000.0f};

/// Of full and of partial saturation, in and outside the range from 0 to 1.
constexpr std::array<float, 3> SATURATED[] = {{1, 0, 0},
                                              {0, 1, 0},
                                              {0, 0, 1},
                                              {1, 1, 0},
                                              {0, 1, 1},
                                              {1, 0, 1},
                                              {0.9f, 0.05f, 0.02f},
                                              {0.05f, 0.6f, 0.1f},
                                              {0.02f, 0.1f, 0.7f},
                                              {0.45f, 0.3f, 0.22f},
                                              {0.18f, 0.2f, 0.24f},
                                              {-0.1f, 0.5f, 1.2f},
                                              {1.3f, -0.05f, 0.4f},
                                              {0.25f, 0.3f, -0.2f},
                                              {8, 0.5f, 0.1f},
                                              {0.01f, 4, 0.3f},
                                              {0.2f, 0.05f, 30}};

/// From this size on, the module may convert images in another way than small ones.
constexpr std::size_t IMAGE_PIXELS = 8192;

std::vector<Color> make_grid() {
    std::vector<Color> grid;
    for (const float gray : GRAYS)
        grid.push_back({gray, gray, gray, ALPHA});
    for (const auto& [red, green, blue] : SATURATED)
        grid.push_back({red, green, blue, ALPHA});
    return grid;
}

/// One field: what would end it becomes a blank.
std::string to_field(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return text;
}

void write_colors(std::ostream& out, const std::vector<Color>& colors) {
    for (const Color& color : colors)
        for (const float value : color) {
            char text[32];
            std::snprintf(text, sizeof text, "\t%.9g", static_cast<double>(value));
            out << text;
        }
    out << "\n";
}

std::vector<Color> convert_singly(const ColorIOConverter& converter, std::vector<Color> colors) {
    for (Color& color : colors) {
        GMathVec4<float> pixel(color[0], color[1], color[2], color[3]);
        converter.convert_pixel(pixel);
        color = {pixel[0], pixel[1], pixel[2], pixel[3]};
    }
    return colors;
}

/// The last of as many copies as make a large image of one row each.
std::vector<Color> convert_as_image(const ColorIOConverter& converter, const std::vector<Color>& colors) {
    const std::size_t height = IMAGE_PIXELS / colors.size() + 1;
    std::vector<Color> image;
    for (std::size_t y = 0; y < height; ++y)
        image.insert(image.end(), colors.begin(), colors.end());
    converter.convert_buffer(image.front().data(), static_cast<unsigned>(colors.size()),
                             static_cast<unsigned>(height), 4);
    return {image.end() - static_cast<std::ptrdiff_t>(colors.size()), image.end()};
}

class RowWriter {
public:
    RowWriter(std::ostream& out, RecordingLog& log) : out_(out), log_(log) {}

    void write_all() {
        out_ << "grid";
        write_colors(out_, grid_);
        const CoreString linear = ColorIO::get_full_color_space_name(ColorIO::get_ROLE_SCENE_LINEAR());
        const unsigned int count = ColorIO::get_color_space_names().get_count();
        for (unsigned int i = 0; i < count; ++i) {
            const CoreString name = ColorIO::get_color_space_name(i);
            if (name == linear)
                continue;
            write(head("space", name, "to scene-linear"), converter_.configure(name, linear));
            write(head("space", name, "from scene-linear"), converter_.configure(linear, name));
        }
        for (const CoreString& label : ColorIO::get_display_view_names()) {
            // The label alone would not do where the display's name holds a full stop.
            CoreString display, view;
            ColorIO::get_display_view(label, display, view);
            write(head("view", label, "from scene-linear"),
                  converter_.configure_for_display(linear, display, view));
        }
    }

private:
    static std::string head(const std::string& kind, const CoreString& name, const std::string& direction) {
        return kind + "\t" + to_field(name.get_data()) + "\t" + direction + "\t";
    }

    void write(const std::string& head, bool configured) {
        // A bypass is not a failure and logs nothing.
        const std::string reason = take_reason(log_);
        if (!configured && !reason.empty()) {
            out_ << head << "refused\t" << reason << "\n";
            return;
        }
        const bool converts = configured && converter_.is_enabled();
        write_values(head + "pixel", converts ? convert_singly(converter_, grid_) : grid_);
        write_values(head + "image", converts ? convert_as_image(converter_, grid_) : grid_);
    }

    void write_values(const std::string& head, const std::vector<Color>& colors) {
        out_ << head;
        write_colors(out_, colors);
    }

    std::ostream& out_;
    RecordingLog& log_;
    const std::vector<Color> grid_ = make_grid();
    ColorIOConverter converter_;
};

} // namespace

std::string take_reason(RecordingLog& log) {
    unsigned int level = LOG_INFO;
    for (const RecordingLog::Line& line : log.get_lines())
        level = std::min(level, line.level);
    std::string reason;
    for (const RecordingLog::Line& line : log.get_lines())
        if (line.level == level)
            reason += line.text;
    log.clear();
    reason = to_field(reason);
    reason.erase(reason.find_last_not_of(' ') + 1);
    return reason;
}

void write_parity_rows(std::ostream& out, RecordingLog& log) {
    log.clear();
    RowWriter(out, log).write_all();
}
