#include "viewer/items.h"

#include <algorithm>

#include <imgui.h>

namespace viewer {

void Items::end_frame() {
    shown.swap(declared);
    declared.clear();
}

void Items::note(const std::string& name) {
    const ImVec2 low = ImGui::GetItemRectMin(), high = ImGui::GetItemRectMax();
    if (ImGui::IsItemVisible())
        declared.push_back({name, (low.x + high.x) / 2, (low.y + high.y) / 2});
}

void Items::note_next(const std::string& name, float width, float height) {
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    if (ImGui::IsRectVisible(ImVec2(width, height)))
        declared.push_back({name, corner.x + width / 2, corner.y + height / 2});
}

const Items::Item* Items::find(const std::string& name) const {
    const auto found =
        std::find_if(shown.rbegin(), shown.rend(), [&](const Item& item) { return item.name == name; });
    return found == shown.rend() ? nullptr : &*found;
}

} // namespace viewer
