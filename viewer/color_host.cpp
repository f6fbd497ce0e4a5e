#include "viewer/color_host.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"
#include "colorio/ocio/source_files.h"
#include "host/event/event_ids.h"
#include "host/sys/sys_filesystem.h"
#include "standalone/standalone_app.h"
#include "viewer/markup_fault.h"
#include "viewer/own_files.h"
#include "workflow/failure_reason.h"
#include "workflow/published_names.h"

namespace tool {

namespace {

namespace fs = std::filesystem;

fs::path normalized(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return (error ? path : absolute).lexically_normal();
}

} // namespace

/// Follows what the module tells its host.
class ColorHost::ListObserver : public EventObject {
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

/// What a second manager may change of the module's one state and of what the viewer knows is set back.
class ColorHost::Trial {
public:
    explicit Trial(ColorHost& host) : host(host), manager(&app) {
        manager.init();
        host.session.take_messages();
    }
    ~Trial() {
        ColorIOManager::s_default_color_space_name = space;
        ColorIOManager::s_default_color_picking_space_name = picking;
        host.observer->revision = revision;
    }
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;

private:
    const CoreString space = ColorIOManager::s_default_color_space_name;
    const CoreString picking = ColorIOManager::s_default_color_picking_space_name;
    ColorHost& host;
    const unsigned int revision = host.observer->revision;

public:
    StandaloneApp app;
    ColorIOManager manager;
};

struct ColorHost::Lists {
    unsigned int revision = 0;
    std::vector<std::string> spaces;
    std::vector<std::string> views;
    std::vector<std::string> cdls;
};

ColorHost::ColorHost(const SessionOptions& options, Console& console)
    : session(options, console), config_path(session.get_source().path),
      from_environment(session.get_source().kind == ConfigSource::ENVIRONMENT),
      library_path(session.get_app().get_cdl_library_file_path().view()),
      observer(std::make_unique<ListObserver>()), lists(std::make_unique<Lists>()) {}

ColorHost::~ColorHost() = default;

ColorHost::Fault ColorHost::use_config(const std::string& path) {
    StandaloneApp& app = session.get_app();
    if (path.empty()) {
        app.set_use_color_space_file(false);
    } else {
        if (Fault fault = find_config_fault(path))
            return fault;
        if (path == app.get_color_space_file_path().view())
            app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
        else
            app.set_color_space_file_path(path.c_str());
        app.set_use_color_space_file(true);
    }
    config_path = path;
    config_fault.reset();
    from_environment = false;
    ++observer->revision;
    return {};
}

bool ColorHost::reload() {
    config_fault = config_path.empty() ? Fault() : find_config_fault(config_path);
    // Without a whole configuration the module would turn to the built-in one.
    if (!config_fault && has_own_files(library_path))
        own_fault = reload_own_files();
    if (!config_fault && !config_path.empty())
        raise(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    library_fault = library_path.empty() ? Fault() : find_library_fault(library_path);
    // The module would drop the CDLs of the user's own that cannot be read.
    if (!library_fault && !own_fault && !library_path.empty())
        raise(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    return get_source_faults().empty();
}

template <class Event>
void ColorHost::raise(const Event& event) {
    session.get_app().raise_event(event);
    ++observer->revision;
}

/// What cannot be read keeps its last state in the module, which tells it in its log alone.
ColorHost::Fault ColorHost::reload_own_files() {
    session.take_messages();
    ColorIOManager::get_instance()->load_config(nullptr);
    ++observer->revision;
    std::vector<LoggedMessage> failures;
    for (LoggedMessage& message : session.take_messages())
        if (is_own_file_failure(message))
            failures.push_back(std::move(message));
    return failures.empty() ? Fault() : explain_failure(failures);
}

/// The module makes the corrections of the library anew too; what is wrong with those is told by themselves.
bool ColorHost::is_own_file_failure(const LoggedMessage& message) const {
    return message.level == LOG_ERROR && is_library_failure(message) &&
           (library_path.empty() || message.text.find(library_path) == std::string::npos);
}

std::vector<std::string> ColorHost::get_source_faults() const {
    std::vector<std::string> faults;
    for (const Fault& fault : {config_fault, own_fault, library_fault})
        if (fault)
            faults.push_back(*fault);
    return faults;
}

ColorHost::Fault ColorHost::use_cdl_library(const std::string& path) {
    if (Fault fault = find_library_fault(path))
        return fault;
    session.get_app().set_cdl_library_file_path(path.c_str());
    library_path = path;
    library_fault.reset();
    ++observer->revision;
    return {};
}

/// The active manager falls back to the built-in configuration when it fails, and the viewer is to keep what
/// it shows; so a second one tries first.
ColorHost::Fault ColorHost::find_config_fault(const std::string& path) {
    // The environment may name what is no file, which the module asks the colour library for.
    const bool is_file = !from_environment || path != config_path;
    if (is_file && !SysFilesystem::file_exists(path.c_str()))
        return fmt::format("{}: no such file", path);
    Trial trial(*this);
    if (is_file)
        trial.app.set_color_space_file_path(path.c_str());
    trial.app.set_use_color_space_file(true);
    trial.manager.use_file_config(true);
    if (!trial.manager.is_using_tavelion_config())
        return {};
    return fmt::format("{}: {}", fs::path(path).filename().string(), take_failure());
}

ColorHost::Fault ColorHost::find_library_fault(const std::string& path) {
    if (!SysFilesystem::file_exists(path.c_str()))
        return fmt::format("{}: no such file", path);
    Trial trial(*this);
    const unsigned int builtin_count = trial.manager.get_CDL_names().get_count();
    trial.app.set_cdl_library_file_path(path.c_str());
    trial.manager.update_file_cdl_library_path();
    if (trial.manager.get_CDL_names().get_count() > builtin_count)
        return {};
    // The module tells on standard output where the markup is broken, and in its log only that it is.
    const std::string failure = take_failure(), markup_fault = find_markup_fault(path);
    const std::string& reason = markup_fault.empty() ? failure : markup_fault;
    return fmt::format("{}: {}", fs::path(path).filename().string(),
                       reason.empty() ? "it holds no correction that can be read" : reason);
}

std::string ColorHost::take_failure() {
    const std::vector<LoggedMessage> messages = session.take_messages();
    const bool any = std::any_of(messages.begin(), messages.end(),
                                 [](const LoggedMessage& message) { return message.level <= LOG_WARNING; });
    return any ? explain_failure(messages) : "";
}

std::string ColorHost::get_config_name() const {
    return config_path.empty() ? "the built-in configuration" : fs::path(config_path).filename().string();
}

unsigned int ColorHost::get_revision() const {
    return observer->revision;
}

ColorHost::Lists& ColorHost::get_lists() const {
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

const std::vector<std::string>& ColorHost::get_spaces() const {
    return get_lists().spaces;
}

const std::vector<std::string>& ColorHost::get_views() const {
    return get_lists().views;
}

const std::vector<std::string>& ColorHost::get_cdls() const {
    return get_lists().cdls;
}

std::string ColorHost::get_default_view() const {
    const std::string label(ColorIO::get_default_display_view().view());
    const std::vector<std::string>& views = get_views();
    if (std::find(views.begin(), views.end(), label) != views.end())
        return label;
    return views.empty() ? "" : views.front();
}

std::string ColorHost::get_default_cdl() const {
    return std::string(ColorIO::get_default_CDL_name().view());
}

std::string ColorHost::find_space(const std::string& name) const {
    const std::vector<std::string>& spaces = get_spaces();
    const std::string bare = name.substr(name.find(ColorIOManager::FAMILY_SEPARATOR) + 1);
    for (const std::string& wanted :
         {name, std::string(ColorIO::get_full_color_space_name(bare.c_str()).view())})
        if (std::find(spaces.begin(), spaces.end(), wanted) != spaces.end())
            return wanted;
    return "";
}

ColorHost::FileSpace ColorHost::get_space_of_file(const std::string& path) const {
    const std::string extension(SysFilesystem::get_file_extension(path.c_str()).view());
    const std::string of_extension(
        ColorIO::get_instance()->get_default_color_space_from_ext(extension.c_str()).view());
    const std::string label = find_space(of_extension);
    if (!label.empty())
        return {label, fmt::format("files of the extension {}", extension)};
    for (const CoreString& name :
         {ColorIO::get_default_color_space_name(), ColorIO::get_ROLE_SCENE_LINEAR()}) {
        const std::string fallback = find_space(std::string(name.view()));
        if (!fallback.empty())
            return {fallback, fmt::format("the default, as the configuration has no '{}' for files of the "
                                          "extension {}",
                                          of_extension, extension)};
    }
    return {get_spaces().empty() ? "" : get_spaces().front(), "the first colour space there is"};
}

std::vector<std::string> ColorHost::get_source_files() const {
    std::vector<std::string> files = get_own_files();
    files.push_back(library_path);
    if (!config_path.empty()) {
        files.push_back(config_path);
        for (std::string& file : ocio::get_source_files(ColorIOManager::get_instance()->get_config()))
            files.push_back(std::move(file));
    }
    files.erase(std::remove(files.begin(), files.end(), ""), files.end());
    for (std::string& file : files)
        file = normalized(file).string();
    return files;
}

} // namespace tool
