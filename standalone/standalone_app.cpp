#include "standalone/standalone_app.h"

#include <string>

#include "host/event/event_ids.h"
#include "host/of/of_object_factory.h"
#include "standalone/core/class_destructor.h"
#include "standalone/log_message.h"
#include "standalone/sys/process_folder.h"
#include "standalone/sys/user_folders.h"

namespace {

constexpr const char* FOLDER_NAME = ProcessFolder::GROUP_NAME;

bool is_path_component(const CoreString& name) {
    return !name.is_empty() && name != "." && name != ".." &&
           name.view().find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

} // namespace

struct StandaloneApp::State {
    CoreString cache_folder;
    OfObjectFactory object_factory;
    bool use_color_space_file = false;
    CoreString color_space_file_path;
    CoreString cdl_library_file_path;
    CoreString default_color_space_name = "linear";
    unsigned int use_color_space_by_extension_file = 0;
    CoreString color_space_by_extension_file_path;
    std::unique_ptr<ProcessFolder> process_folder; // where the user's own cache folder cannot be used
    CoreString temp_folder_note;

    std::string make_process_folder(const std::string& reason);
    std::string make_temp_folder(const std::string& name, std::string& base);

    // Returns whether `field` changed.
    template <class Value>
    static bool change(Value& field, const Value& value) {
        if (field == value)
            return false;
        field = value;
        return true;
    }
};

StandaloneApp::StandaloneApp(const CoreString& cache_folder) : state(std::make_unique<State>()) {
    state->cache_folder = cache_folder;
}

StandaloneApp::~StandaloneApp() = default;

const CoreClassInfo& StandaloneApp::get_class_info() const {
    return class_info();
}

const CoreClassInfo& StandaloneApp::class_info() {
    static const CoreClassInfo& info = CoreClassInfo::new_class(
        "StandaloneApp", destroy_object<StandaloneApp>, OfApp::class_info(), nullptr);
    return info;
}

void StandaloneApp::set_use_color_space_file(bool use) {
    if (State::change(state->use_color_space_file, use))
        raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
}

void StandaloneApp::set_color_space_file_path(const CoreString& path) {
    if (State::change(state->color_space_file_path, path))
        raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
}

void StandaloneApp::set_cdl_library_file_path(const CoreString& path) {
    if (State::change(state->cdl_library_file_path, path))
        raise_event(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
}

void StandaloneApp::set_default_color_space_name(const CoreString& name) {
    if (State::change(state->default_color_space_name, name))
        raise_event(EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED);
}

void StandaloneApp::set_use_color_space_by_extension_file(unsigned int use) {
    if (State::change(state->use_color_space_by_extension_file, use))
        raise_event(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
}

void StandaloneApp::set_color_space_by_extension_file_path(const CoreString& path) {
    if (State::change(state->color_space_by_extension_file_path, path))
        raise_event(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
}

bool StandaloneApp::get_use_color_space_file() const {
    return state->use_color_space_file;
}

const CoreString& StandaloneApp::get_color_space_file_path() const {
    return state->color_space_file_path;
}

const CoreString& StandaloneApp::get_cdl_library_file_path() const {
    return state->cdl_library_file_path;
}

const CoreString& StandaloneApp::get_default_color_space_name() const {
    return state->default_color_space_name;
}

unsigned int StandaloneApp::get_use_color_space_by_extension_file() const {
    return state->use_color_space_by_extension_file;
}

const CoreString& StandaloneApp::get_color_space_by_extension_file_path() const {
    return state->color_space_by_extension_file_path;
}

OfObjectFactory& StandaloneApp::get_object_factory() {
    return state->object_factory;
}

// Makes the folder for temporary files when the user's cache folder cannot be used because of `reason`. Empty
// on success, else the reason.
std::string StandaloneApp::State::make_process_folder(const std::string& reason) {
    auto made = ProcessFolder::make();
    if (!made)
        return reason + ", and " + made.get_failure().describe();
    process_folder = std::move(*made);
    const std::string note =
        "temporary files are kept in '" + process_folder->get_path() +
        "' until the program ends, because the user's cache folder cannot be used: " + reason +
        "; set XDG_CACHE_HOME to a folder that can be written";
    temp_folder_note = CoreString(std::string_view(note));
    log_message(LOG_INFO, temp_folder_note, ".\n");
    return {};
}

// Makes FOLDER_NAME/`name` in a folder that it returns in `base`. Empty on success, else the reason.
std::string StandaloneApp::State::make_temp_folder(const std::string& name, std::string& base) {
    const bool is_users = cache_folder.is_empty();
    base = is_users ? get_user_cache_folder() : std::string(cache_folder.view());
    if (!process_folder) {
        std::string reason =
            base.empty() ? "the user has no home folder" : make_private_folder(base, FOLDER_NAME, name);
        if (!reason.empty() && is_users)
            reason = make_process_folder(reason);
        if (!process_folder)
            return reason;
    }
    base = process_folder->get_path();
    return make_private_folder(base, FOLDER_NAME, name);
}

bool StandaloneApp::create_temp_folder(const CoreString& name, CoreString& path) {
    std::string base = state->cache_folder.get_data();
    const std::string reason =
        is_path_component(name) ? state->make_temp_folder(name.get_data(), base) : "invalid folder name";
    if (!reason.empty()) {
        log_message(LOG_ERROR, "Cannot create the folder '", name, "' for temporary files in '", base.c_str(),
                    "/", FOLDER_NAME, "': ", reason.c_str(), ".\n");
        return false;
    }
    path = CoreString(std::string_view(base)) + "/" + FOLDER_NAME + "/" + name;
    return true;
}

const CoreString& StandaloneApp::get_temp_folder_note() const {
    return state->temp_folder_note;
}
