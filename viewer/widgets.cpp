#include "viewer/widgets.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>
#include <imgui.h>
#include <imgui_stdlib.h>

#include "viewer/panel_input.h"

namespace viewer::widgets {

namespace {

const ImVec4 ERROR_COLOR = {1.0f, 0.45f, 0.4f, 1};
const ImVec4 NOTE_COLOR = {0.55f, 0.85f, 0.55f, 1};
/// Lists longer than this get a field to search them.
constexpr std::size_t LONG_LIST = 12;

void show_text(const std::string& text, const ImVec4& color) {
    ImGui::PushStyleColor(ImGuiCol_Text, color);
    widgets::show_text(text);
    ImGui::PopStyleColor();
}

bool contains(const std::string& text, const std::string& part) {
    const auto same = [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

/// The text of a closed menu of names. Made before the menu; the text is drawn on its frame nevertheless.
class Preview {
public:
    Preview() : list(ImGui::GetWindowDrawList()), corner(ImGui::GetCursorScreenPos()) {
        const float arrow = ImGui::GetFrameHeight();
        end = ImVec2(corner.x + ImGui::GetContentRegionAvail().x - arrow, corner.y + arrow);
    }
    /// After it was declared.
    void draw(const std::string& name) const {
        const ImVec2 padding = ImGui::GetStyle().FramePadding;
        const ImVec4 clip(corner.x + padding.x, corner.y, end.x, end.y);
        list->AddText(ImGui::GetFont(), ImGui::GetFontSize(), ImVec2(clip.x, corner.y + padding.y),
                      ImGui::GetColorU32(ImGuiCol_Text), name.data(), name.data() + name.size(), 0, &clip);
    }

private:
    ImDrawList* list;
    ImVec2 corner;
    ImVec2 end;
};

/// Within an open one.
void close_on_escape() {
    if (panel_input::is_pressed(ImGuiKey_Escape))
        ImGui::CloseCurrentPopup();
}

} // namespace

void show_text(const std::string& text) {
    ImGui::PushTextWrapPos(0);
    ImGui::TextUnformatted(text.c_str());
    ImGui::PopTextWrapPos();
}

void show_error(const diagnostics::Diagnostic& error) {
    show_text(format_with_hint(error), ERROR_COLOR);
}

void show_note(const std::string& text) {
    show_text(text, NOTE_COLOR);
}

void show_secondary_text(const std::string& text) {
    show_text(text, ImGui::GetStyleColorVec4(ImGuiCol_TextDisabled));
}

bool show_button(Items& items, const char* label) {
    const bool pressed = ImGui::Button(label);
    items.note(label);
    return pressed;
}

bool show_radio_button(Items& items, const char* label, bool is_chosen) {
    const bool pressed = ImGui::RadioButton(label, is_chosen);
    items.note(label);
    return pressed;
}

bool begin_menu(Items& items, const char* label) {
    const ImVec2 size = ImGui::CalcTextSize(label);
    items.note_next(label, size.x, size.y);
    const bool is_open = ImGui::BeginMenu(label);
    if (is_open)
        close_on_escape();
    return is_open;
}

bool show_menu_item(Items& items, const char* label, const char* key, bool is_checked) {
    const bool pressed = ImGui::MenuItem(label, key, is_checked);
    items.note(label);
    return pressed;
}

bool show_entry(Items& items, std::size_t position, const std::string& name, bool is_selected, int flags) {
    const char* const end = name.data() + name.size();
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    const float width = std::max(ImGui::GetContentRegionAvail().x, ImGui::CalcTextSize(name.data(), end).x);
    ImGui::PushID(static_cast<int>(position));
    const bool is_clicked = ImGui::Selectable("##entry", is_selected, flags, ImVec2(width, 0));
    ImGui::PopID();
    items.note(name);
    ImGui::GetWindowDrawList()->AddText(corner, ImGui::GetColorU32(ImGuiCol_Text), name.data(), end);
    return is_clicked;
}

bool choose(Items& items, const char* title, const std::vector<std::string>& names,
            const std::string& current, std::string& filter, std::string& chosen) {
    bool changed = false;
    ImGui::TextUnformatted(title);
    items.note_next(title, ImGui::GetContentRegionAvail().x, ImGui::GetFrameHeight());
    ImGui::SetNextItemWidth(-1);
    const Preview preview;
    const bool is_open =
        ImGui::BeginCombo(fmt::format("##{}", title).c_str(), "", ImGuiComboFlags_HeightLarge);
    preview.draw(current);
    if (!is_open)
        return false;
    close_on_escape();
    if (ImGui::IsWindowAppearing())
        filter.clear();
    if (names.size() > LONG_LIST) {
        ImGui::SetNextItemWidth(-1);
        ImGui::InputTextWithHint("##filter", "search", &filter);
        items.note("search");
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string& name = names[i];
        if (!contains(name, filter))
            continue;
        if (show_entry(items, i, name, name == current)) {
            chosen = name;
            changed = true;
        }
        if (name == current)
            ImGui::SetItemDefaultFocus();
    }
    ImGui::EndCombo();
    return changed;
}

} // namespace viewer::widgets
