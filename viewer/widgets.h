#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "viewer/items.h"

/// The widgets of the viewer's panels. Clickable ones are recorded in `items`.
namespace viewer::widgets {

void show_text(const std::string& text);
void show_error(const diagnostics::Diagnostic& error);
void show_note(const std::string& text);
/// In the color of secondary text.
void show_secondary_text(const std::string& text);

bool show_button(Items& items, const char* label);
bool show_radio_button(Items& items, const char* label, bool is_chosen);

/// Escape closes menus and menus of names.

/// True while the menu is open; `ImGui::EndMenu` then ends it.
bool begin_menu(Items& items, const char* label);
/// True when it was clicked.
bool show_menu_item(Items& items, const char* label, const char* key = nullptr, bool is_checked = false);

/// An entry of a list, with its name unchanged; `position` distinguishes entries of the same name. True when
/// it was clicked, according to `flags` (ImGuiSelectableFlags).
bool show_entry(Items& items, std::size_t position, const std::string& name, bool is_selected, int flags = 0);

/// A menu of names below a title; true when one was chosen, which is then in `chosen`. Long lists have a
/// search field; `filter` is the text typed there.
bool choose(Items& items, const char* title, const std::vector<std::string>& names,
            const std::string& current, std::string& filter, std::string& chosen);

} // namespace viewer::widgets
