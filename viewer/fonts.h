#pragma once

#include <string>

struct ImFontAtlas;

namespace viewer {

/// A font file of the system's with letters beyond Latin 1; empty when there is none at the usual places.
std::string find_system_font();

/// Adds the font of the panels: the one that the panels' library brings, which ends with Latin 1, and beyond
/// that the letters that the system's font has of other alphabets, where there is one.
void add_fonts(ImFontAtlas& atlas);

} // namespace viewer
