#include "viewer/fonts.h"

#include <fstream>

#include <imgui.h>

namespace viewer {

namespace {

constexpr const char* PLACES[] = {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
                                  "/usr/share/fonts/dejavu-sans-fonts/DejaVuSans.ttf",
                                  "/usr/share/fonts/dejavu/DejaVuSans.ttf",
                                  "/usr/share/fonts/TTF/DejaVuSans.ttf",
                                  "/usr/share/fonts/truetype/noto/NotoSans-Regular.ttf",
                                  "/usr/share/fonts/google-noto/NotoSans-Regular.ttf",
                                  "/usr/share/fonts/noto/NotoSans-Regular.ttf"};

/// First and last letters; alphabets that are written letter by letter, and few enough to be drawn in
/// advance.
constexpr ImWchar RANGES[] = {0x0100, 0x024F, // Latin
                              0x0370, 0x03FF, // Greek
                              0x0400, 0x052F, // Cyrillic
                              0x0531, 0x058F, // Armenian
                              0x10A0, 0x10FF, // Georgian
                              0x1E00, 0x1EFF, // Latin with more marks
                              0x2010, 0x205E, // punctuation
                              0x20A0, 0x20BF, // currencies
                              0x2100, 0x22FF, // signs of letters, arrows, mathematics
                              0};

/// Of the font that the panels' library brings, in pixels.
constexpr float HEIGHT = 13;

} // namespace

std::string find_system_font() {
    for (const char* place : PLACES)
        if (std::ifstream(place, std::ios::binary))
            return place;
    return "";
}

void add_fonts(ImFontAtlas& atlas) {
    atlas.AddFontDefault();
    const std::string path = find_system_font();
    if (path.empty())
        return;
    ImFontConfig config;
    config.MergeMode = true;
    atlas.AddFontFromFileTTF(path.c_str(), HEIGHT, &config, RANGES);
}

} // namespace viewer
