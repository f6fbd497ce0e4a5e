#include <filesystem>

#include <imgui.h>

#include "viewer/panels.h"
#include "viewer/widgets.h"

namespace viewer {

namespace {

struct LayoutChoice {
    const char* label;
    const char* key;
    Layout layout;
};
constexpr LayoutChoice LAYOUTS[] = {{"One view", "o", Layout::SINGLE},
                                    {"Wipe between two views", "w", Layout::WIPE},
                                    {"Two views side by side", "s", Layout::SIDE_BY_SIDE},
                                    {"Difference of GPU and CPU", "d", Layout::DIFFERENCE}};

const char* get_title(FileKind kind) {
    switch (kind) {
    case FileKind::CONFIG:
        return "Open OCIO config";
    case FileKind::CDL_LIBRARY:
        return "Open CDL library";
    default:
        return "Open image";
    }
}

void open_file(ViewModel& model, FileKind kind, const std::string& path) {
    switch (kind) {
    case FileKind::CONFIG:
        model.use_config(path);
        break;
    case FileKind::CDL_LIBRARY:
        model.use_cdl_library(path);
        break;
    default:
        model.open(path);
    }
}

} // namespace

void Panels::show_menus(ViewModel& model) {
    if (!ImGui::BeginMenuBar())
        return;
    if (widgets::begin_menu(items, "File")) {
        show_file_menu(model);
        ImGui::EndMenu();
    }
    if (widgets::begin_menu(items, "Show")) {
        for (const LayoutChoice& choice : LAYOUTS)
            if (widgets::show_menu_item(items, choice.label, choice.key, model.get_layout() == choice.layout))
                model.set_layout(choice.layout);
        ImGui::Separator();
        if (widgets::show_menu_item(items, "Fit", "f", model.get_camera().is_fitting()))
            model.get_camera().fit();
        if (widgets::show_menu_item(items, "Actual pixels", "1"))
            model.get_camera().set_zoom(1);
        ImGui::EndMenu();
    }
    ImGui::EndMenuBar();
}

void Panels::show_file_menu(ViewModel& model) {
    if (widgets::show_menu_item(items, "Open image...", "p"))
        open_dialog(FileKind::IMAGE, model);
    if (widgets::show_menu_item(items, "Open config...", "c"))
        open_dialog(FileKind::CONFIG, model);
    if (widgets::show_menu_item(items, "Open CDL library...", "l"))
        open_dialog(FileKind::CDL_LIBRARY, model);
    if (widgets::show_menu_item(items, "Built-in config", nullptr,
                                model.get_live_config().get_config_path().empty()))
        attempt([&] { model.use_config(""); });
    ImGui::Separator();
    if (widgets::show_menu_item(items, "Quit"))
        quits = true;
}

/// Starts in the folder of the current config, or else of the image.
void Panels::open_dialog(FileKind kind, const ViewModel& model) {
    const std::string& config = model.get_live_config().get_config_path();
    const std::string& image = model.get_images().get_current_path();
    const std::filesystem::path beside = kind == FileKind::IMAGE || config.empty() ? image : config;
    dialog_kind = kind;
    dialog.open(get_title(kind), beside.parent_path().string(), get_extensions(kind));
}

void Panels::show_dialog(ViewModel& model) {
    const std::optional<std::string> path = dialog.show(items);
    if (!path)
        return;
    attempt([&] { open_file(model, dialog_kind, *path); });
    if (error)
        dialog.set_error(*error);
    else
        dialog.close();
}

} // namespace viewer
