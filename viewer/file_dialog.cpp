#include "viewer/file_dialog.h"

#include <algorithm>

#include <imgui.h>
#include <imgui_stdlib.h>

#include "viewer/panel_input.h"
#include "viewer/widgets.h"

namespace viewer {

using panel_input::is_pressed;

namespace {

constexpr float WIDTH = 560;
constexpr float HEIGHT = 440;
/// Of the window, when that is small.
constexpr float LARGEST_SHARE = 0.95f;
constexpr int PAGE = 10;
/// Lines below the list: the switch and the buttons, and an error of two lines.
float get_height_below() {
    return 2 * ImGui::GetFrameHeightWithSpacing() + 2 * ImGui::GetTextLineHeightWithSpacing();
}

} // namespace

void FileDialog::open(const std::string& wanted_title, const std::string& folder,
                      const std::vector<std::string>& extensions) {
    title = wanted_title;
    chooser.emplace(folder, extensions);
    path.clear();
    takes_focus = true;
    selection_moved = true;
}

void FileDialog::set_error(const diagnostics::Diagnostic& error) {
    if (chooser)
        chooser->set_error(error);
}

std::optional<std::string> FileDialog::show(Items& items) {
    if (!chooser && !ImGui::IsPopupOpen(title.c_str()))
        return {};
    if (!ImGui::IsPopupOpen(title.c_str()))
        ImGui::OpenPopup(title.c_str());
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowSize(
        ImVec2(std::min(WIDTH, LARGEST_SHARE * screen.x), std::min(HEIGHT, LARGEST_SHARE * screen.y)));
    ImGui::SetNextWindowPos(ImVec2(screen.x / 2, screen.y / 2), ImGuiCond_Always, ImVec2(0.5f, 0.5f));
    if (!ImGui::BeginPopupModal(title.c_str(), nullptr,
                                ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoMove |
                                    ImGuiWindowFlags_NoSavedSettings))
        return {};
    std::optional<std::string> chosen;
    if (chooser)
        chosen = show_content(items);
    if (!chooser)
        ImGui::CloseCurrentPopup();
    ImGui::EndPopup();
    return chosen;
}

std::optional<std::string> FileDialog::show_content(Items& items) {
    show_folder(items);
    show_path(items);
    std::optional<std::string> chosen = follow_keys();
    for (const auto part : {&FileDialog::show_entries, &FileDialog::show_buttons})
        if (chooser && !chosen)
            chosen = (this->*part)(items);
    if (chooser && chooser->get_error())
        widgets::show_error(*chooser->get_error());
    return chosen;
}

void FileDialog::show_folder(Items& items) {
    if (widgets::show_button(items, "Up"))
        chooser->go_up();
    ImGui::SameLine();
    if (widgets::show_button(items, "Home"))
        chooser->go_home();
    ImGui::SameLine();
    widgets::show_text(chooser->get_shown_folder());
}

void FileDialog::show_path(Items& items) {
    if (takes_focus)
        ImGui::SetKeyboardFocusHere();
    takes_focus = false;
    ImGui::SetNextItemWidth(-1);
    ImGui::InputTextWithHint("##path", "path of a file or folder", &path);
    items.note("path");
}

std::optional<std::string> FileDialog::follow_keys() {
    constexpr struct {
        int key; ///< of ImGuiKey
        int by;
    } MOVES[] = {
        {ImGuiKey_UpArrow, -1}, {ImGuiKey_DownArrow, 1}, {ImGuiKey_PageUp, -PAGE}, {ImGuiKey_PageDown, PAGE}};
    for (const auto& move : MOVES)
        if (is_pressed(move.key)) {
            chooser->move_selection(move.by);
            selection_moved = true;
        }
    if (is_pressed(ImGuiKey_Escape)) {
        close();
        return {};
    }
    if (is_pressed(ImGuiKey_Enter) || is_pressed(panel_input::KEYPAD_ENTER)) {
        takes_focus = true;
        return choose();
    }
    return {};
}

/// The typed path, or else the selected entry.
std::optional<std::string> FileDialog::choose() {
    const std::string folder = chooser->get_folder();
    std::optional<std::string> chosen =
        path.empty() ? chooser->choose_selected() : chooser->choose_typed(path);
    if (chooser->get_folder() != folder)
        path.clear();
    selection_moved = true;
    return chosen;
}

std::optional<std::string> FileDialog::show_entries(Items& items) {
    std::optional<std::size_t> opened;
    ImGui::BeginChild("entries", ImVec2(0, -get_height_below()), true);
    if (selection_moved)
        keep_selection_in_view();
    selection_moved = false;
    const std::vector<FileChooser::Entry>& entries = chooser->get_entries();
    if (entries.empty())
        widgets::show_secondary_text("no matching files");
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(entries.size()));
    while (clipper.Step())
        for (auto i = static_cast<std::size_t>(clipper.DisplayStart);
             i < static_cast<std::size_t>(clipper.DisplayEnd); ++i) {
            const std::string name = entries[i].name + (entries[i].is_folder ? "/" : "");
            if (widgets::show_entry(items, i, name, i == chooser->get_selected(),
                                    ImGuiSelectableFlags_AllowDoubleClick)) {
                chooser->select(i);
                path.clear();
                if (ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left))
                    opened = i;
            }
        }
    ImGui::EndChild();
    return opened ? choose() : std::nullopt;
}

void FileDialog::keep_selection_in_view() const {
    const float line = ImGui::GetTextLineHeightWithSpacing();
    const float top = static_cast<float>(chooser->get_selected()) * line;
    const float height = ImGui::GetWindowHeight() - 2 * ImGui::GetStyle().WindowPadding.y;
    if (top < ImGui::GetScrollY())
        ImGui::SetScrollY(top);
    else if (top + line > ImGui::GetScrollY() + height)
        ImGui::SetScrollY(top + line - height);
}

std::optional<std::string> FileDialog::show_buttons(Items& items) {
    bool shows_all = chooser->get_shows_all();
    if (ImGui::Checkbox("All files", &shows_all))
        chooser->set_shows_all(shows_all);
    items.note("All files");
    const bool opens = widgets::show_button(items, "Open");
    ImGui::SameLine();
    if (widgets::show_button(items, "Cancel"))
        close();
    return opens ? choose() : std::nullopt;
}

} // namespace viewer
