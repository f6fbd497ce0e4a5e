#include "tool/viewer/panels.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>
#include <imgui.h>
#include <imgui_impl_opengl3.h>
#include <imgui_stdlib.h>

#include "tool/exit_code.h"
#include "tool/gl/gl_error.h"

namespace tool {

namespace {

const ImVec4 FAULT_COLOR = {1.0f, 0.45f, 0.4f, 1};
const ImVec4 NOTE_COLOR = {0.55f, 0.85f, 0.55f, 1};
constexpr float MAX_EXPOSURE = 10;
/// Lists longer than this get a field to search them.
constexpr std::size_t LONG_LIST = 12;

void show_text(const std::string& text) {
    ImGui::PushTextWrapPos(0);
    ImGui::TextUnformatted(text.c_str());
    ImGui::PopTextWrapPos();
}

void show_text(const std::string& text, const ImVec4& color) {
    ImGui::PushStyleColor(ImGuiCol_Text, color);
    show_text(text);
    ImGui::PopStyleColor();
}

bool contains(const std::string& text, const std::string& part) {
    const auto same = [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

/// A menu of names; true when another one was chosen, which `chosen` then is.
bool choose(const char* title, const std::vector<std::string>& names, const std::string& current,
            std::string& filter, std::string& chosen) {
    bool changed = false;
    ImGui::TextUnformatted(title);
    ImGui::SetNextItemWidth(-1);
    if (!ImGui::BeginCombo(fmt::format("##{}", title).c_str(), current.c_str(), ImGuiComboFlags_HeightLarge))
        return false;
    if (ImGui::IsWindowAppearing())
        filter.clear();
    if (names.size() > LONG_LIST) {
        ImGui::SetNextItemWidth(-1);
        ImGui::InputTextWithHint("##filter", "search", &filter);
    }
    for (const std::string& name : names) {
        if (!contains(name, filter))
            continue;
        if (ImGui::Selectable(name.c_str(), name == current)) {
            chosen = name;
            changed = true;
        }
        if (name == current)
            ImGui::SetItemDefaultFocus();
    }
    ImGui::EndCombo();
    return changed;
}

std::string format_pixel(const float* rgba) {
    return fmt::format("{:10.4f}{:10.4f}{:10.4f}{:8.3f}", rgba[0], rgba[1], rgba[2], rgba[3]);
}

} // namespace

Panels::Panels() {
    IMGUI_CHECKVERSION();
    ImGui::CreateContext();
    ImGui::GetIO().IniFilename = nullptr;
    ImGui::StyleColorsDark();
    if (ImGui_ImplOpenGL3_Init("#version 330"))
        return;
    ImGui::DestroyContext();
    throw GlError("the panels cannot be drawn with this OpenGL");
}

Panels::~Panels() {
    ImGui_ImplOpenGL3_Shutdown();
    ImGui::DestroyContext();
}

float Panels::get_pixel_scale() {
    return std::max(1.0f, ImGui::GetIO().DisplayFramebufferScale.x);
}

void Panels::begin() {
    ImGui_ImplOpenGL3_NewFrame();
    ImGui::NewFrame();
}

void Panels::end() {
    ImGui::Render();
    ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
}

/// Makes a change that the user asked for; a refusal is shown.
template <class Change>
void Panels::attempt(const Change& change) {
    try {
        change();
        fault.clear();
    } catch (const CommandError& error) {
        fault = error.what();
    }
}

void Panels::show(ViewModel& model, const ViewRenderer& renderer, const PixelReadout* readout) {
    const ImVec2 size(WIDTH, ImGui::GetIO().DisplaySize.y);
    ImGui::SetNextWindowPos(ImVec2(0, 0));
    ImGui::SetNextWindowSize(size);
    ImGui::Begin("colorio", nullptr,
                 ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoSavedSettings);
    show_faults(model);
    show_pictures(model);
    show_colors(model);
    show_layout(model, renderer);
    show_readout(readout);
    show_configuration(model);
    ImGui::End();
}

void Panels::show_faults(const ViewModel& model) const {
    for (const std::string& text : model.get_faults())
        show_text(text, FAULT_COLOR);
    if (!fault.empty())
        show_text(fault, FAULT_COLOR);
    else if (!model.get_note().empty())
        show_text(model.get_note(), NOTE_COLOR);
}

void Panels::show_pictures(ViewModel& model) {
    if (!model.get_picture())
        return;
    const Picture& picture = *model.get_picture();
    if (model.get_pictures().get_paths().size() > 1) {
        if (ImGui::ArrowButton("##previous", ImGuiDir_Left))
            attempt([&] { model.step_picture(-1); });
        ImGui::SameLine();
        if (ImGui::ArrowButton("##next", ImGuiDir_Right))
            attempt([&] { model.step_picture(1); });
        ImGui::SameLine();
    }
    show_text(picture.path);
    show_text(fmt::format("{} x {}, {}; {:.4g} %", picture.width, picture.height, picture.channels,
                          100 * model.get_camera().get_placement().zoom));
    ImGui::Separator();
}

void Panels::show_colors(ViewModel& model) {
    const ColorSettings settings = model.get_settings(ViewModel::FIRST);
    std::string chosen;
    if (choose("Input space", model.get_host().get_spaces(), settings.input_space, filter, chosen))
        attempt([&] { model.set_input_space(chosen); });
    ImGui::PushStyleColor(ImGuiCol_Text, ImGui::GetStyleColorVec4(ImGuiCol_TextDisabled));
    show_text(model.get_space_reason());
    ImGui::PopStyleColor();

    if (choose("CDL", model.get_host().get_cdls(), settings.cdl, filter, chosen))
        attempt([&] { model.set_cdl(chosen); });

    ImGui::TextUnformatted("Exposure");
    float exposure = settings.exposure;
    if (ImGui::Button("0"))
        model.set_exposure(0);
    ImGui::SameLine();
    ImGui::SetNextItemWidth(-1);
    if (ImGui::SliderFloat("##exposure", &exposure, -MAX_EXPOSURE, MAX_EXPOSURE, "%.2f stops"))
        model.set_exposure(exposure);

    if (choose("View", model.get_host().get_views(), settings.view, filter, chosen))
        attempt([&] { model.set_view(ViewModel::FIRST, chosen); });
    ImGui::Separator();
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
        if (ImGui::RadioButton(choice.label, layout == choice.layout))
            model.set_layout(choice.layout);
        if (choice.layout != Layout::DIFFERENCE)
            ImGui::SameLine();
    }
    if (layout == Layout::WIPE || layout == Layout::SIDE_BY_SIDE) {
        std::string chosen;
        if (choose("Second view", model.get_host().get_views(), model.get_settings(ViewModel::SECOND).view,
                   filter, chosen))
            attempt([&] { model.set_view(ViewModel::SECOND, chosen); });
    }
    if (layout == Layout::WIPE) {
        auto wipe = static_cast<float>(model.get_wipe());
        ImGui::SetNextItemWidth(-1);
        if (ImGui::SliderFloat("##wipe", &wipe, 0, 1, "line at %.2f"))
            model.set_wipe(wipe);
    }
    if (layout == Layout::DIFFERENCE) {
        float scale = model.get_difference_scale();
        ImGui::SetNextItemWidth(-1);
        if (ImGui::SliderFloat("##scale", &scale, 1, 10000, "differences times %.0f",
                               ImGuiSliderFlags_Logarithmic))
            model.set_difference_scale(scale);
        const Difference* difference = renderer.get_difference();
        show_text(difference ? format_difference(*difference) : "comparing...");
    }
    ImGui::Separator();
}

void Panels::show_readout(const PixelReadout* readout) const {
    if (!readout) {
        show_text("No pixel below the pointer");
    } else {
        show_text(fmt::format("Pixel {}, {}", readout->x, readout->y));
        show_text("file" + format_pixel(readout->before));
        show_text("CPU " + format_pixel(readout->cpu));
        show_text("GPU " + format_pixel(readout->gpu));
    }
    ImGui::Separator();
}

void Panels::show_configuration(ViewModel& model) {
    show_text(fmt::format("Configuration: {}", model.get_host().get_config_name()));
    ImGui::SetNextItemWidth(-1);
    const bool entered = ImGui::InputTextWithHint("##config", "path of a configuration, or drop one here",
                                                  &config_path, ImGuiInputTextFlags_EnterReturnsTrue);
    const bool loads = ImGui::Button("Load") || entered;
    if (loads && !config_path.empty())
        attempt([&] { model.use_config(config_path); });
    ImGui::SameLine();
    if (ImGui::Button("Built-in"))
        attempt([&] { model.use_config(""); });
    ImGui::SameLine();
    if (ImGui::Button("CDL library") && !config_path.empty())
        attempt([&] { model.use_cdl_library(config_path); });
    ImGui::TextDisabled("f fit  1 100%%  o w s d layout  [ ] exposure");
}

} // namespace tool
