#include "viewer/view_model.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/failure.h"
#include "workflow/name_resolution.h"
#include "workflow/nearest_names.h"

namespace viewer {

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

ViewModel::ViewModel(workflow::LiveConfig& live_config) : live_config(live_config) {
    use_existing_names();
    watch_files();
}

void ViewModel::add_images(const std::vector<std::string>& paths) {
    for (const std::string& path : paths)
        images.add(path);
    watch_files();
}

void ViewModel::open(const std::string& path) {
    const std::shared_ptr<const Image> former = get_image();
    images.open(path);
    take_space_of_image(former);
    watch_files();
}

void ViewModel::step_image(int by) {
    const std::shared_ptr<const Image> former = get_image();
    images.step(by);
    take_space_of_image(former);
}

/// The choice of a space holds for one file.
void ViewModel::take_space_of_image(const std::shared_ptr<const Image>& former) {
    if (!get_image() || (former && former->path == get_image()->path))
        return;
    take_space_of_file();
}

void ViewModel::take_space_of_file() {
    space_is_chosen = false;
    inverse_view.clear();
    const std::shared_ptr<const Image>& shown = get_image();
    file_space =
        workflow::find_file_space(shown ? shown->path : "", shown ? std::optional(shown->tags) : std::nullopt,
                                  live_config.get_config_name());
    input_space = file_space.color_space;
    space_reason = file_space.reason;
}

void ViewModel::set_input_space(const std::string& name) {
    input_space = workflow::resolve_color_space(live_config.get_session(), name).label;
    inverse_view.clear();
    space_reason = "chosen";
    space_is_chosen = true;
}

void ViewModel::set_inverse_view(const std::string& label) {
    workflow::ConversionRequest request;
    request.inverse_view = workflow::resolve_view(live_config.get_session(), "", label).label;
    const workflow::Conversion trial(live_config.get_session(), request); // throws without an inverse
    inverse_view = request.inverse_view;
    space_reason = "chosen";
    space_is_chosen = true;
}

void ViewModel::set_cdl(const std::string& name) {
    if (!holds(live_config.get_cdls(), name))
        throw diagnostics::Failure(workflow::explain_missing(
            diagnostics::Code::CDL_UNKNOWN, fmt::format("no CDL '{}'", name), name,
            live_config.get_custom_errors(), workflow::did_you_mean(name, live_config.get_cdls())));
    cdl = name;
}

void ViewModel::set_steps(std::vector<workflow::ColorStep> wanted) {
    workflow::ConversionRequest request = make_request();
    request.steps = wanted;
    const workflow::Conversion trial(live_config.get_session(),
                                     request); // throws where a step cannot be made
    steps = std::move(wanted);
    for (ConfiguredConversion& configured : conversions)
        configured.key.reset();
}

void ViewModel::set_view(Side side, const std::string& view, const std::string& display) {
    views[side] = workflow::resolve_view(live_config.get_session(), display, view).label;
}

ColorSettings ViewModel::get_settings(Side side) const {
    return {input_space, cdl, views[side], exposure, inverse_view};
}

bool ViewModel::Key::operator==(const Key& other) const {
    return revision == other.revision && input_space == other.input_space &&
           inverse_view == other.inverse_view && cdl == other.cdl && view == other.view &&
           takes_exposure == other.takes_exposure;
}

ViewModel::Key ViewModel::make_key(Side side) const {
    return {live_config.get_revision(), input_space, inverse_view, cdl, views[side], exposure != 0};
}

/// With the source alone.
workflow::ConversionRequest ViewModel::make_request() const {
    workflow::ConversionRequest request;
    (inverse_view.empty() ? request.from : request.inverse_view) =
        inverse_view.empty() ? input_space : inverse_view;
    return request;
}

std::shared_ptr<const workflow::Conversion> ViewModel::get_conversion(Side side) {
    ConfiguredConversion& cached = conversions[side];
    const Key key = make_key(side);
    if (cached.key && *cached.key == key)
        return cached.conversion;
    cached.key = key;
    cached.error.reset();
    workflow::ConversionRequest request = make_request();
    request.view = views[side];
    if (cdl != live_config.get_default_cdl())
        request.steps.push_back({workflow::ColorStep::CDL, cdl});
    request.steps.insert(request.steps.end(), steps.begin(), steps.end());
    request.takes_exposure = key.takes_exposure;
    try {
        cached.conversion = std::make_shared<const workflow::Conversion>(live_config.get_session(), request);
    } catch (const diagnostics::Failure& failure) {
        cached.error = failure.get_worst();
    }
    return cached.conversion;
}

void ViewModel::set_wipe(double position) {
    wipe = std::clamp(position, 0.0, 1.0);
}

void ViewModel::use_config(const std::string& path) {
    if (workflow::LiveConfig::Error error = live_config.use_config(path))
        throw diagnostics::Failure(*std::move(error));
    set_note(fmt::format("using {}", live_config.get_config_name()), use_existing_names());
    watch_files();
}

void ViewModel::use_cdl_library(const std::string& path) {
    if (workflow::LiveConfig::Error error = live_config.use_cdl_library(path))
        throw diagnostics::Failure(*std::move(error));
    std::vector<std::string> others = use_existing_names();
    for (const diagnostics::Diagnostic& warning : live_config.get_library_warnings())
        others.push_back(diagnostics::format_located(warning));
    set_note(fmt::format("using {}", get_file_name(path)), std::move(others));
    watch_files();
}

/// Replaces names that are not in the config by its defaults.
std::vector<std::string> ViewModel::use_existing_names() {
    revision = live_config.get_revision();
    std::vector<std::string> replaced;
    const auto note_replaced = [&](const char* kind, const std::string& former, const std::string& now) {
        if (!former.empty() && former != now)
            replaced.push_back(fmt::format("{} '{}' no longer exists, using '{}'", kind, former, now));
    };
    const bool exists = inverse_view.empty() ? workflow::find_color_space(input_space).has_value()
                                             : holds(live_config.get_views(), inverse_view);
    if (!space_is_chosen || !exists) {
        const char* const kind = inverse_view.empty() ? "color space" : "inverted view";
        const std::string former = space_is_chosen ? inverse_view.empty() ? input_space : inverse_view : "";
        take_space_of_file();
        note_replaced(kind, former, input_space);
    }
    const auto replace = [&](const char* kind, const std::vector<std::string>& names, std::string& name,
                             const std::string& standard) {
        if (!holds(names, name))
            note_replaced(kind, std::exchange(name, standard), standard);
    };
    replace("CDL", live_config.get_cdls(), cdl, live_config.get_default_cdl());
    replace("view", live_config.get_views(), views[FIRST], live_config.get_default_view());
    replace("second view", live_config.get_views(), views[SECOND], live_config.get_default_view());
    return replaced;
}

void ViewModel::watch_files() {
    source_files = live_config.get_source_files();
    std::sort(source_files.begin(), source_files.end());
    std::vector<std::string> files = source_files;
    for (const std::string& path : images.get_paths())
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
        images.refresh(path);
    const bool is_told = live_config.get_revision() != revision;
    if (is_told) {
        take_existing_names(is_read_again);
        watch_files();
    }
    return is_told || !changes.empty();
}

/// The note becomes the text about names alone, unless it already has the reason.
void ViewModel::take_existing_names(bool note_tells_why) {
    const std::vector<std::string> replaced = use_existing_names();
    if (!replaced.empty())
        set_note(note_tells_why ? note : "", replaced);
}

void ViewModel::set_note(const std::string& first, std::vector<std::string> others) {
    if (!first.empty())
        others.insert(others.begin(), first);
    note = fmt::format("{}", fmt::join(others, "; "));
}

bool ViewModel::reload_sources(const std::string& changed) {
    const bool is_whole = live_config.reload();
    if (is_whole)
        note = fmt::format("read {} again", get_file_name(changed));
    return is_whole;
}

/// The error of the current settings, if the view is shown.
ViewModel::Error ViewModel::get_conversion_error(Side side) const {
    const ConfiguredConversion& cached = conversions[side];
    const bool is_shown = side == FIRST || shows_both_views(layout);
    const bool is_current = cached.key && *cached.key == make_key(side);
    return is_shown && is_current ? cached.error : Error();
}

diagnostics::Diagnostics ViewModel::get_shown_errors() const {
    diagnostics::Diagnostics errors;
    for (const Error& error : {get_conversion_error(FIRST), get_conversion_error(SECOND), images.get_error()})
        if (error)
            add_new(errors, {*error});
    return errors;
}

diagnostics::Diagnostics ViewModel::get_errors() const {
    diagnostics::Diagnostics errors = live_config.get_source_errors();
    const diagnostics::Diagnostics& of_start = live_config.get_start_errors();
    for (diagnostics::Diagnostic& error : errors)
        if (std::find(of_start.begin(), of_start.end(), error) == of_start.end())
            error.message += " (still using the last valid version)";
    add_new(errors, get_shown_errors());
    return errors;
}

} // namespace viewer
