#include "tool/viewer/view_model.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "tool/exit_code.h"
#include "tool/name_resolution.h"
#include "tool/nearest_names.h"

namespace tool {

namespace {

bool holds(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool is_same_file(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::absolute(a, error).lexically_normal() ==
           std::filesystem::absolute(b, error).lexically_normal();
}

} // namespace

ViewModel::ViewModel(ColorHost& host) : host(host) {
    use_existing_names();
    watch_files();
}

void ViewModel::open(const std::string& path) {
    show(path);
    if (!holds(paths, path))
        paths.push_back(path);
    watch_files();
}

void ViewModel::show(const std::string& path) {
    const bool is_other = !picture || picture->path != path;
    picture = std::make_shared<const Picture>(load_picture(path));
    picture_fault.clear();
    if (is_other) {
        space_is_chosen = false;
        take_space_of_file();
    }
}

void ViewModel::step_picture(int by) {
    if (!picture || paths.empty())
        return;
    const auto count = static_cast<std::ptrdiff_t>(paths.size());
    const auto shown = std::find(paths.begin(), paths.end(), picture->path) - paths.begin();
    show(paths[static_cast<std::size_t>(((shown + by) % count + count) % count)]);
}

void ViewModel::take_space_of_file() {
    const ColorHost::FileSpace space = host.get_space_of_file(picture ? picture->path : "");
    input_space = space.label;
    space_reason = space.reason;
}

void ViewModel::set_input_space(const std::string& name) {
    input_space = resolve_color_space(name, host.get_config_name()).label;
    space_reason = "chosen";
    space_is_chosen = true;
}

void ViewModel::set_cdl(const std::string& name) {
    if (!holds(host.get_cdls(), name))
        throw CommandError(fmt::format("no CDL '{}'{}", name, did_you_mean(name, host.get_cdls())));
    cdl = name;
}

void ViewModel::set_view(Side side, const std::string& label) {
    views[side] = resolve_view("", label, host.get_config_name()).label;
}

ColorSettings ViewModel::get_settings(Side side) const {
    return {input_space, cdl, views[side], exposure};
}

std::shared_ptr<const ColorChain> ViewModel::get_chain(Side side) {
    Chain& cached = chains[side];
    const ColorSettings settings = get_settings(side);
    const ColorChain::Key key = ColorChain::make_key(host, settings);
    if (cached.key && *cached.key == key)
        return cached.chain;
    cached.key = key;
    cached.fault.clear();
    try {
        cached.chain = std::make_shared<const ColorChain>(host, settings);
    } catch (const CommandError& error) {
        cached.fault = error.what();
    }
    return cached.chain;
}

void ViewModel::set_wipe(double position) {
    wipe = std::clamp(position, 0.0, 1.0);
}

void ViewModel::use_config(const std::string& path) {
    if (const ColorHost::Fault fault = host.use_config(path))
        throw CommandError(*fault);
    source_fault.clear();
    note = fmt::format("using {}", host.get_config_name());
    use_existing_names();
    watch_files();
}

void ViewModel::use_cdl_library(const std::string& path) {
    if (const ColorHost::Fault fault = host.use_cdl_library(path))
        throw CommandError(*fault);
    use_existing_names();
    watch_files();
}

/// Names that the configuration lacks give way to its defaults.
void ViewModel::use_existing_names() {
    if (!space_is_chosen || !holds(host.get_spaces(), input_space)) {
        space_is_chosen = false;
        take_space_of_file();
    }
    if (!holds(host.get_cdls(), cdl))
        cdl = host.get_default_cdl();
    for (std::string& view : views)
        if (!holds(host.get_views(), view))
            view = host.get_default_view();
}

void ViewModel::watch_files() {
    std::vector<std::string> folders = host.get_source_folders();
    for (const std::string& path : paths)
        folders.push_back(std::filesystem::absolute(path).lexically_normal().parent_path().string());
    watcher.watch(folders);
}

bool ViewModel::follow_files(std::chrono::milliseconds patience) {
    const std::vector<std::string> changes = watcher.take_changes(patience);
    const auto changed = std::find_if(changes.begin(), changes.end(),
                                      [&](const std::string& path) { return host.is_source_file(path); });
    if (changed != changes.end()) {
        const ColorHost::Fault fault = host.reload();
        source_fault = fault ? *fault + " (still showing the last good state)" : "";
        if (!fault)
            note = fmt::format("read {} again", std::filesystem::path(*changed).filename().string());
        use_existing_names();
        watch_files();
    }
    const bool picture_changed =
        picture && std::any_of(changes.begin(), changes.end(),
                               [&](const std::string& path) { return is_same_file(path, picture->path); });
    if (picture_changed) {
        try {
            show(picture->path);
        } catch (const CommandError& error) {
            picture_fault = error.what();
        }
    }
    return changed != changes.end() || picture_changed;
}

std::vector<std::string> ViewModel::get_faults() const {
    std::vector<std::string> faults;
    for (const std::string& fault : {source_fault, chains[FIRST].fault, chains[SECOND].fault, picture_fault})
        if (!fault.empty() && !holds(faults, fault))
            faults.push_back(fault);
    return faults;
}

} // namespace tool
