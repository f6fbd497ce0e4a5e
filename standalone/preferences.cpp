#include "standalone/preferences.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "standalone/log_message.h"
#include "standalone/parser/parser_copy.h"
#include "standalone/parser/yaml_limits.h"
#include "standalone/parser/yaml_reader.h"
#include "standalone/parser/yaml_writer.h"
#include "standalone/preference_fields.h"
#include "standalone/standalone_app.h"
#include "standalone/sys/file_replacement.h"
#include "standalone/sys/folder_lock.h"
#include "standalone/sys/read_text.h"
#include "standalone/sys/set_aside.h"
#include "standalone/sys/user_folders.h"

namespace {

constexpr const char* MODULE_ENTRY = "color_management";
// What the module writes into its group; it drops everything else when it saves.
constexpr std::array<std::string_view, 3> MODULE_ENTRIES{"space", "CDL", "extension"};
constexpr mode_t FILE_MODE = 0600;

bool is_module_entry(const CoreString& name) {
    return std::find(MODULE_ENTRIES.begin(), MODULE_ENTRIES.end(), name.view()) != MODULE_ENTRIES.end();
}

} // namespace

struct PreferenceFile::State {
    enum class Content { READ, ABSENT, SET_ASIDE, UNUSABLE };

    CoreString path;
    std::shared_ptr<ParserGroup> root = std::make_shared<ParserGroup>(nullptr); // as last read
    bool is_loading = false;
    ParserEntry color_management{MODULE_ENTRY};

    std::string get_folder() const {
        const std::filesystem::path folder = std::filesystem::path(path.get_data()).parent_path();
        return folder.empty() ? "." : folder.string();
    }

    void take_module_values();
    void keep_unknown_module_entries();
    Content read_locked();
    Content read();
    Content refuse_damaged(const std::string& reason);
    bool fail_to_save(const std::string& reason) const;
    bool write(const ParserGroup& preferences) const;
};

void PreferenceFile::State::take_module_values() {
    color_management.reset();
    if (const ParserEntry* const entry = root->find_entry(MODULE_ENTRY))
        copy_values(*entry, color_management, nullptr);
}

// Copies what the module does not know in the file's entry to the entry that it has just saved.
void PreferenceFile::State::keep_unknown_module_entries() {
    const ParserEntry* const in_file = root->find_entry(MODULE_ENTRY);
    const ParserGroup* const group = in_file ? in_file->get_group(0) : nullptr;
    for (unsigned int i = 0; group && i < group->get_entry_count(); ++i) {
        const ParserEntry& entry = *group->get_entry(i);
        if (!is_module_entry(entry.get_name()))
            copy_entry(entry, color_management.is_group() ? *color_management.get_group(0)
                                                          : *color_management.add_group(nullptr));
    }
}

PreferenceFile::State::Content PreferenceFile::State::read_locked() {
    const FolderLock lock(get_folder());
    return read();
}

// Fills `root` from the file. The caller holds the lock.
PreferenceFile::State::Content PreferenceFile::State::read() {
    const FileText file = read_text(path.get_data(), MAX_FILE_SIZE);
    if (file.error_number == ENOENT)
        return Content::ABSENT;
    if (file.error_number != 0) {
        log_message(LOG_ERROR, "Preferences: cannot read '", path, "': ", file.reason.c_str(), ".\n");
        return Content::UNUSABLE;
    }
    if (!file.text)
        return refuse_damaged(": " + file.reason);
    auto read_root = std::make_shared<ParserGroup>(nullptr);
    if (const auto reason = read_yaml(*file.text, *read_root))
        return refuse_damaged(*reason);
    root = std::move(read_root);
    return Content::READ;
}

PreferenceFile::State::Content PreferenceFile::State::refuse_damaged(const std::string& reason) {
    const std::string kept = set_aside(path.get_data());
    if (kept.empty()) {
        log_message(LOG_ERROR, "Preferences: ", path, reason.c_str(),
                    "; the file cannot be renamed either.\n");
        return Content::UNUSABLE;
    }
    log_message(LOG_ERROR, "Preferences: ", path, reason.c_str(), "; the file is now '", kept.c_str(),
                "'.\n");
    return Content::SET_ASIDE;
}

bool PreferenceFile::State::fail_to_save(const std::string& reason) const {
    log_message(LOG_ERROR, "Preferences: cannot save '", path, "': ", reason.c_str(), ".\n");
    return false;
}

bool PreferenceFile::State::write(const ParserGroup& preferences) const {
    const YamlText yaml = write_yaml(preferences);
    if (!yaml.text)
        return fail_to_save(yaml.reason);
    FileReplacement file(path.get_data(), FILE_MODE);
    return (file.write(*yaml.text) && file.commit()) || fail_to_save(file.get_error());
}

PreferenceFile::PreferenceFile(const CoreString& path) : state(std::make_unique<State>()) {
    state->path = path;
}

PreferenceFile::~PreferenceFile() = default;

CoreString PreferenceFile::get_default_path() {
    const std::string folder = get_user_config_folder();
    return folder.empty() ? CoreString()
                          : CoreString(std::string_view(folder + "/qb_colorio/preferences.yaml"));
}

bool PreferenceFile::load(StandaloneApp& app) {
    const State::Content content = state->read_locked();
    if (content != State::Content::READ)
        return content == State::Content::ABSENT;
    state->take_module_values();
    // Whoever handles the application's events may load again.
    const std::shared_ptr<const ParserGroup> root = state->root;
    const bool was_loading = std::exchange(state->is_loading, true);
    load_preference_fields(*root, state->path, app);
    state->is_loading = was_loading;
    return true;
}

ParserEntry& PreferenceFile::get_color_management() {
    return state->color_management;
}

bool PreferenceFile::save(const StandaloneApp& app, const ModuleSave& save_module) {
    if (state->is_loading)
        return state->fail_to_save("it is being loaded");
    const std::string reason = make_folders(state->get_folder());
    if (!reason.empty())
        return state->fail_to_save(reason);
    if (save_module)
        save_module(&state->color_management);

    const FolderLock lock(state->get_folder());
    if (state->read() == State::Content::UNUSABLE)
        return false;
    if (save_module)
        state->keep_unknown_module_entries();
    else
        state->take_module_values();

    auto preferences = std::make_shared<ParserGroup>(nullptr);
    save_preference_fields(app, *preferences);
    copy_entry(state->color_management, *preferences);
    for (unsigned int i = 0; i < state->root->get_entry_count(); ++i) {
        const ParserEntry& entry = *state->root->get_entry(i);
        if (!is_preference_field(entry.get_name()) && entry.get_name() != MODULE_ENTRY)
            copy_entry(entry, *preferences);
    }
    if (!state->write(*preferences))
        return false;
    state->root = std::move(preferences);
    return true;
}
