#include "workflow/live_config.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "standalone/standalone_app.h"
#include "workflow/cdl_library.h"
#include "workflow/custom_files.h"
#include "workflow/published_names.h"

namespace workflow {

namespace {

namespace fs = std::filesystem;

fs::path normalized(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return (error ? path : absolute).lexically_normal();
}

} // namespace

/// Counts the module's events about changed names and colors.
class LiveConfig::ListObserver : public EventObject {
public:
    ListObserver() {
        ColorIO& facade = *ColorIO::get_instance();
        connect(facade, EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED, &ListObserver::on_change, nullptr);
        connect(facade, EVT_ID_COLORIO_MANAGER_CDL_LIST_CHANGED, &ListObserver::on_change, nullptr);
        connect(facade, EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED, &ListObserver::on_change, nullptr);
    }

    void on_change(AppBase&, const EventInfo&, OfObject*) { ++revision; }

    unsigned int revision = 1;
};

struct LiveConfig::Lists {
    unsigned int revision = 0;
    std::vector<std::string> spaces;
    std::vector<std::string> views;
    std::vector<std::string> cdls;
};

LiveConfig::LiveConfig(const SessionOptions& options)
    : session(options), start_errors(session.get_custom_errors()),
      library_path(session.get_preferences().get_app().get_cdl_library_file_path().view()),
      observer(std::make_unique<ListObserver>()), lists(std::make_unique<Lists>()) {
    diagnostics::Diagnostics custom_errors;
    for (const diagnostics::Diagnostic& error : start_errors)
        if (error.file == library_path && !library_path.empty())
            library_error = error;
        else
            custom_errors.push_back(error);
    session.set_custom_errors(std::move(custom_errors));
}

LiveConfig::~LiveConfig() = default;

LiveConfig::Error LiveConfig::use_config(const std::string& path) {
    Error error = session.use_config(path);
    if (!error) {
        config_error.reset();
        ++observer->revision;
    }
    return error;
}

bool LiveConfig::reload() {
    const std::string& config_path = get_config_path();
    config_error = config_path.empty() ? Error() : session.check_config(config_path);
    // With an unusable config the module would switch to the built-in config.
    if (!config_error && has_custom_files(session, library_path))
        session.set_custom_errors(reload_custom_files());
    if (!config_error && !config_path.empty())
        raise(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    if (!library_path.empty())
        reload_library();
    return get_source_errors().empty();
}

/// Publishes nothing new while a custom CDL cannot be read: the module would drop it.
void LiveConfig::reload_library() {
    library_error =
        get_custom_errors().empty() ? session.use_cdl_library(library_path) : check_cdl_library(library_path);
    ++observer->revision;
}

template <class Event>
void LiveConfig::raise(const Event& event) {
    session.get_app().raise_event(event);
    ++observer->revision;
}

/// Files that cannot be read keep their last state in the module. The module also reads the CDL library
/// again; its errors are reported with the library.
diagnostics::Diagnostics LiveConfig::reload_custom_files() {
    ColorIODiagnostics collector;
    ColorIOManager::get_instance()->load_config(nullptr);
    ++observer->revision;
    diagnostics::Diagnostics errors;
    for (const diagnostics::Diagnostic& diagnostic :
         session.get_cdl_library().name_original(collector.take()))
        if (diagnostic.severity == diagnostics::Severity::ERROR && diagnostic.file != library_path)
            add_new(errors, {diagnostic});
    return errors;
}

diagnostics::Diagnostics LiveConfig::get_source_errors() const {
    diagnostics::Diagnostics errors;
    if (config_error)
        add_new(errors, {*config_error});
    add_new(errors, get_custom_errors());
    if (library_error)
        add_new(errors, {*library_error});
    return errors;
}

LiveConfig::Error LiveConfig::use_cdl_library(const std::string& path) {
    if (Error error = session.use_cdl_library(path))
        return error;
    library_path = path;
    library_error.reset();
    ++observer->revision;
    return {};
}

const diagnostics::Diagnostics& LiveConfig::get_library_warnings() const {
    return session.get_cdl_library().get_warnings();
}

unsigned int LiveConfig::get_revision() const {
    return observer->revision;
}

LiveConfig::Lists& LiveConfig::get_lists() const {
    if (lists->revision == observer->revision)
        return *lists;
    *lists = Lists{observer->revision, {}, {}, {}};
    for (const PublishedSpace& space : get_published_spaces())
        lists->spaces.push_back(space.label);
    for (const CoreString& label : ColorIO::get_display_view_names())
        lists->views.emplace_back(label.view());
    for (const CoreString& name : ColorIOManager::get_instance()->get_CDL_names())
        lists->cdls.emplace_back(name.view());
    return *lists;
}

const std::vector<std::string>& LiveConfig::get_spaces() const {
    return get_lists().spaces;
}

const std::vector<std::string>& LiveConfig::get_views() const {
    return get_lists().views;
}

const std::vector<std::string>& LiveConfig::get_cdls() const {
    return get_lists().cdls;
}

std::string LiveConfig::get_default_view() const {
    const std::string label(ColorIO::get_default_display_view().view());
    const std::vector<std::string>& views = get_views();
    if (std::find(views.begin(), views.end(), label) != views.end())
        return label;
    return views.empty() ? "" : views.front();
}

std::string LiveConfig::get_default_cdl() const {
    return std::string(ColorIO::get_default_CDL_name().view());
}

std::vector<std::string> LiveConfig::get_source_files() const {
    std::vector<std::string> files = get_custom_files(session);
    files.push_back(library_path);
    if (const std::string& config_path = get_config_path(); !config_path.empty()) {
        files.push_back(config_path);
        for (const CoreString& file : ColorIOInspection::get_source_files())
            files.emplace_back(file.view());
    }
    files.erase(std::remove(files.begin(), files.end(), ""), files.end());
    for (std::string& file : files)
        file = normalized(file).string();
    return files;
}

} // namespace workflow
