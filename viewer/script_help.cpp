#include "viewer/script_help.h"

#include <fmt/format.h>

namespace viewer {

const std::vector<ScriptText>& get_script_texts() {
    static const std::vector<ScriptText> texts = {
        {"open", "FILE", "show an image"},
        {"next", "", "show the next image"},
        {"space", "NAME", "set the input color space"},
        {"inverse-view", "LABEL", "invert the view that the image was made for"},
        {"cdl", "NAME", "apply a CDL"},
        {"exposure", "STOPS", "set the exposure"},
        {"view", "LABEL", "set the view"},
        {"second-view", "LABEL", "set the view to compare with"},
        {"layout", "NAME", "set the layout: single, wipe, two or difference"},
        {"wipe", "POSITION", "wipe between the views at a position from 0 to 1"},
        {"difference-scale", "FACTOR", "multiply the differences shown"},
        {"zoom", "FACTOR", "set the zoom: screen pixels per image pixel, or 'fit'"},
        {"pan", "X Y", "move the image by screen pixels"},
        {"cursor", "X Y", "read the pixel at a screen position"},
        {"panels", "on|off", "show or hide the panels"},
        {"items", "", "print the clickable items and their positions in the window"},
        {"click", "NAME", "click an item of the panels"},
        {"double-click", "NAME", "double-click an item of the panels"},
        {"press", "KEY", "press a key: Enter, Escape, Up, Down and so on"},
        {"type", "TEXT", "type text"},
        {"drag", "X Y X Y", "drag the pointer between two positions in the window"},
        {"shift-drag", "X Y X Y", "the same with the Shift key held"},
        {"wheel", "X Y NOTCHES", "turn the mouse wheel at a position in the window"},
        {"drop", "FILE", "drop a file on the window"},
        {"config", "FILE", "use an OCIO config; without a file, the built-in one"},
        {"cdl-library", "FILE", "use the color corrections of a CDL file"},
        {"await-change", "SECONDS", "wait until a changed file has been read again"},
        {"print", "", "print the current state"},
        {"compare", "", "print the difference between GPU and CPU"},
        {"screenshot", "FILE", "save the screen as an image"},
        {"quit", "", "end the viewer"},
    };
    return texts;
}

std::string get_script_help() {
    std::string help;
    for (const ScriptText& text : get_script_texts())
        help += fmt::format("  {:<28}{}\n", fmt::format("{} {}", text.name, text.argument), text.description);
    return help;
}

} // namespace viewer
