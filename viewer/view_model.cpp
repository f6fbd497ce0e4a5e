#include "viewer/view_model.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include <fmt/format.h>

#include "tool/exit_code.h"
#include "workflow/name_resolution.h"
#include "workflow/nearest_names.h"

namespace tool {

namespace {

bool holds(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string get_absolute(const std::string& path) {
    std::error_code error;
    return std::filesystem::absolute(path, error).lexically_normal().string();
}

std::string get_file_name(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

} // namespace

ViewModel::ViewModel(ColorHost& host) : host(host) {
    use_existing_names();
    watch_files();
}

void ViewModel::add_pictures(const std::vector<std::string>& paths) {
    for (const std::string& path : paths)
        pictures.add(path);
    watch_files();
}

void ViewModel::open(const std::string& path) {
    const std::shared_ptr<const Picture> former = get_picture();
    pictures.open(path);
    take_space_of_picture(former);
    watch_files();
}

void ViewModel::step_picture(int by) {
    const std::shared_ptr<const Picture> former = get_picture();
    pictures.step(by);
    take_space_of_picture(former);
}

/// The choice of a space holds for one file.
void ViewModel::take_space_of_picture(const std::shared_ptr<const Picture>& former) {
    if (!get_picture() || (former && former->path == get_picture()->path))
        return;
    space_is_chosen = false;
    take_space_of_file();
}

void ViewModel::take_space_of_file() {
    const ColorHost::FileSpace space = host.get_space_of_file(get_picture() ? get_picture()->path : "");
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
    note = fmt::format("using {}", host.get_config_name()) + use_existing_names();
    watch_files();
}

void ViewModel::use_cdl_library(const std::string& path) {
    if (const ColorHost::Fault fault = host.use_cdl_library(path))
        throw CommandError(*fault);
    note = fmt::format("using {}", get_file_name(path)) + use_existing_names();
    watch_files();
}

/// Names that the configuration lacks give way to its defaults.
std::string ViewModel::use_existing_names() {
    revision = host.get_revision();
    std::string replaced;
    const auto note_replaced = [&](const char* kind, const std::string& former, const std::string& now) {
        if (!former.empty() && former != now)
            replaced += fmt::format("; no {} '{}' any more, now '{}'", kind, former, now);
    };
    if (!space_is_chosen || !holds(host.get_spaces(), input_space)) {
        const std::string former = space_is_chosen ? input_space : "";
        space_is_chosen = false;
        take_space_of_file();
        note_replaced("colour space", former, input_space);
    }
    const auto replace = [&](const char* kind, const std::vector<std::string>& names, std::string& name,
                             const std::string& standard) {
        if (!holds(names, name))
            note_replaced(kind, std::exchange(name, standard), standard);
    };
    replace("CDL", host.get_cdls(), cdl, host.get_default_cdl());
    replace("view", host.get_views(), views[FIRST], host.get_default_view());
    replace("second view", host.get_views(), views[SECOND], host.get_default_view());
    return replaced;
}

void ViewModel::watch_files() {
    source_files = host.get_source_files();
    std::sort(source_files.begin(), source_files.end());
    std::vector<std::string> files = source_files;
    for (const std::string& path : pictures.get_paths())
        files.push_back(get_absolute(path));
    watcher.watch(files);
}

bool ViewModel::follow_changes(std::chrono::milliseconds patience) {
    const std::vector<std::string> changes = watcher.take_changes(patience);
    const auto source = std::find_if(changes.begin(), changes.end(), [&](const std::string& path) {
        return std::binary_search(source_files.begin(), source_files.end(), path);
    });
    const bool is_read_again = source != changes.end() && reload_sources(*source);
    for (const std::string& path : changes)
        pictures.refresh(path);
    const bool is_told = host.get_revision() != revision;
    if (is_told) {
        take_existing_names(is_read_again);
        watch_files();
    }
    return is_told || !changes.empty();
}

/// Sole words of the note are those about names, unless it tells why.
void ViewModel::take_existing_names(bool note_tells_why) {
    const std::string replaced = use_existing_names();
    if (!replaced.empty())
        note = note_tells_why ? note + replaced : replaced.substr(replaced.find_first_not_of("; "));
}

bool ViewModel::reload_sources(const std::string& changed) {
    const bool is_whole = host.reload();
    if (is_whole)
        note = fmt::format("read {} again", get_file_name(changed));
    return is_whole;
}

/// A fault of other settings, and of a view that is not shown, is none.
std::string ViewModel::get_chain_fault(Side side) const {
    const Chain& cached = chains[side];
    const bool is_shown = side == FIRST || shows_both_views(layout);
    const bool is_current = cached.key && *cached.key == ColorChain::make_key(host, get_settings(side));
    return is_shown && is_current ? cached.fault : "";
}

std::vector<std::string> ViewModel::get_faults() const {
    std::vector<std::string> faults = host.get_source_faults();
    for (std::string& fault : faults)
        fault += " (still showing the last good state)";
    for (const std::string& fault : {get_chain_fault(FIRST), get_chain_fault(SECOND), pictures.get_fault()})
        if (!fault.empty() && !holds(faults, fault))
            faults.push_back(fault);
    return faults;
}

} // namespace tool
