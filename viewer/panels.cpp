#include "viewer/panels.h"

#include <dlfcn.h>

#include <algorithm>

#include <fmt/format.h>
#include <imgui.h>
#include <imgui_impl_opengl3.h>

#include "diagnostics/failure.h"
#include "viewer/attempt.h"
#include "viewer/fonts.h"
#include "viewer/widgets.h"

namespace viewer {

namespace {

constexpr float MAX_EXPOSURE = 10;

std::string format_pixel(const float* rgba) {
    return fmt::format("{:10.4f}{:10.4f}{:10.4f}{:8.3f}", rgba[0], rgba[1], rgba[2], rgba[3]);
}

} // namespace

using widgets::choose;
using widgets::show_text;

namespace {

/// Dear ImGui releases OpenGL when it ends, but since 1.91 keeps the function addresses that it has loaded.
void keep_opengl_loaded() {
    dlopen("libOpenGL.so.0", RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
}

} // namespace

Panels::Panels() {
    IMGUI_CHECKVERSION();
    keep_opengl_loaded();
    ImGui::CreateContext();
    ImGui::GetIO().IniFilename = nullptr;
    add_fonts(*ImGui::GetIO().Fonts);
    ImGui::StyleColorsDark();
    ImGui::GetStyle().Colors[ImGuiCol_PopupBg].w = 1;
    if (ImGui_ImplOpenGL3_Init("#version 330"))
        return;
    ImGui::DestroyContext();
    diagnostics::fail(diagnostics::Code::GPU_LIMIT, "the panels cannot be drawn with this OpenGL driver");
}

Panels::~Panels() {
    ImGui_ImplOpenGL3_Shutdown();
    ImGui::DestroyContext();
}

float Panels::get_pixel_scale() {
    return std::max(1.0f, ImGui::GetIO().DisplayFramebufferScale.x);
}

void Panels::attempt(const std::function<void()>& change) {
    error = find_error(change);
}

void Panels::begin() {
    ImGui_ImplOpenGL3_NewFrame();
    ImGui::NewFrame();
}

void Panels::end() {
    ImGui::Render();
    ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
    items.end_frame();
}

void Panels::show(ViewModel& model, const ViewRenderer& renderer, const PixelReadout* readout) {
    const ImVec2 size(WIDTH, ImGui::GetIO().DisplaySize.y);
    ImGui::SetNextWindowPos(ImVec2(0, 0));
    ImGui::SetNextWindowSize(size);
    ImGui::Begin("colorio", nullptr,
                 ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoCollapse |
                     ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_MenuBar);
    show_menus(model);
    show_errors(model);
    show_images(model);
    show_colors(model);
    show_layout(model, renderer);
    show_readout(readout);
    show_configuration(model);
    show_dialog(model);
    ImGui::End();
}

void Panels::show_errors(const ViewModel& model) const {
    for (const diagnostics::Diagnostic& of_model : model.get_errors())
        widgets::show_error(of_model);
    if (drawing_error)
        widgets::show_error(*drawing_error);
    if (error)
        widgets::show_error(*error);
    else if (!drawing_error && !model.get_note().empty())
        widgets::show_note(model.get_note());
}

void Panels::show_images(ViewModel& model) {
    if (!model.get_image())
        return;
    const Image& image = *model.get_image();
    if (model.get_images().get_paths().size() > 1) {
        if (widgets::show_button(items, "<"))
            attempt([&] { model.step_image(-1); });
        ImGui::SameLine();
        if (widgets::show_button(items, ">"))
            attempt([&] { model.step_image(1); });
        ImGui::SameLine();
    }
    show_text(image.path);
    show_text(fmt::format("{} x {}, {}; {:.4g} %", image.width, image.height, image.channels,
                          100 * model.get_camera().get_placement().zoom));
    ImGui::Separator();
}

void Panels::show_colors(ViewModel& model) {
    const ColorSettings settings = model.get_settings(ViewModel::FIRST);
    std::string chosen;
    if (choose(items, "Input color space", model.get_live_config().get_spaces(), settings.describe_source(),
               filter, chosen))
        attempt([&] { model.set_input_space(chosen); });
    widgets::show_secondary_text(model.get_space_reason());

    if (choose(items, "CDL", model.get_live_config().get_cdls(), settings.cdl, filter, chosen))
        attempt([&] { model.set_cdl(chosen); });

    show_exposure(model);
    if (choose(items, "View", model.get_live_config().get_views(), settings.view, filter, chosen))
        attempt([&] { model.set_view(ViewModel::FIRST, chosen); });
    ImGui::Separator();
}

void Panels::show_exposure(ViewModel& model) {
    ImGui::TextUnformatted("Exposure");
    float exposure = model.get_settings(ViewModel::FIRST).exposure;
    if (widgets::show_button(items, "0"))
        model.set_exposure(0);
    ImGui::SameLine();
    ImGui::SetNextItemWidth(-1);
    if (ImGui::SliderFloat("##exposure", &exposure, -MAX_EXPOSURE, MAX_EXPOSURE, "%.2f stops"))
        model.set_exposure(exposure);
    items.note("Exposure");
}

void Panels::show_layout(ViewModel& model, const ViewRenderer& renderer) {
    struct Choice {
        const char* label;
        Layout layout;
    };
    constexpr Choice CHOICES[] = {{"One", Layout::SINGLE},
                                  {"Wipe", Layout::WIPE},
                                  {"Two", Layout::SIDE_BY_SIDE},
                                  {"GPU - CPU", Layout::DIFFERENCE}};
    const Layout layout = model.get_layout();
    for (const Choice& choice : CHOICES) {
        if (widgets::show_radio_button(items, choice.label, layout == choice.layout))
            model.set_layout(choice.layout);
        if (choice.layout != Layout::DIFFERENCE)
            ImGui::SameLine();
    }
    if (shows_both_views(layout)) {
        std::string chosen;
        if (choose(items, "Second view", model.get_live_config().get_views(),
                   model.get_settings(ViewModel::SECOND).view, filter, chosen))
            attempt([&] { model.set_view(ViewModel::SECOND, chosen); });
    }
    if (layout == Layout::WIPE) {
        auto wipe = static_cast<float>(model.get_wipe());
        ImGui::SetNextItemWidth(-1);
        if (ImGui::SliderFloat("##wipe", &wipe, 0, 1, "position %.2f"))
            model.set_wipe(wipe);
        items.note("Wipe position");
    }
    if (layout == Layout::DIFFERENCE) {
        float scale = model.get_difference_scale();
        ImGui::SetNextItemWidth(-1);
        if (ImGui::SliderFloat("##scale", &scale, 1, 10000, "difference x %.0f",
                               ImGuiSliderFlags_Logarithmic))
            model.set_difference_scale(scale);
        items.note("Difference scale");
        const Difference* difference = renderer.get_difference();
        show_text(difference ? format_difference(*difference) : "comparing...");
    }
    ImGui::Separator();
}

void Panels::show_readout(const PixelReadout* readout) const {
    if (!readout) {
        show_text("No pixel at the pointer");
    } else {
        show_text(fmt::format("Pixel {}, {}", readout->x, readout->y));
        show_text("file" + format_pixel(readout->before));
        show_text("CPU " + format_pixel(readout->cpu));
        show_text("GPU " + format_pixel(readout->gpu));
    }
    ImGui::Separator();
}

void Panels::show_configuration(ViewModel& model) {
    show_text(fmt::format("OCIO config: {}", model.get_live_config().get_config_name()));
    if (widgets::show_button(items, "Open..."))
        open_dialog(FileKind::CONFIG, model);
    ImGui::SameLine();
    if (widgets::show_button(items, "Built-in"))
        attempt([&] { model.use_config(""); });
    ImGui::SameLine();
    if (widgets::show_button(items, "CDL library..."))
        open_dialog(FileKind::CDL_LIBRARY, model);
    ImGui::TextDisabled("f fit  1 100%%  o w s d layout  [ ] exposure");
    ImGui::TextDisabled("p c l open  < > images");
}

} // namespace viewer
