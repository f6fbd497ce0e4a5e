#include "standalone/preferences.h"

#include <cerrno>
#include <optional>
#include <string>
#include <utility>

#include "diagnostics/failure.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "files/links.h"
#include "files/lock.h"
#include "files/replacement.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "standalone/log_message.h"
#include "standalone/parser/parser_copy.h"
#include "standalone/parser/yaml_limits.h"
#include "standalone/parser/yaml_reader.h"
#include "standalone/parser/yaml_writer.h"
#include "standalone/preference_fields.h"
#include "standalone/preference_marker.h"
#include "standalone/standalone_app.h"
#include "standalone/sys/set_aside.h"
#include "standalone/sys/user_folders.h"

namespace {

// A preferences file is private to its user, also if the old one was not.
constexpr files::ReplacementRules WRITING_RULES{0600, false, false};

constexpr char NOT_PREFERENCES[] = "not a preferences file; it is neither used nor changed";

using diagnostics::Code;
using diagnostics::Severity;

} // namespace

struct PreferenceFile::State {
    enum class Content { READ, ABSENT, DAMAGED, UNUSABLE };

    CoreString path;
    std::shared_ptr<ParserGroup> root = std::make_shared<ParserGroup>(nullptr); // as last read
    bool is_loading = false;
    ParserEntry color_management{MODULE_ENTRY};
    std::optional<files::Lock> lock; // from a load before a change to the save after it
    std::optional<YamlFault> damage; // what is wrong with a file that is damaged
    diagnostics::Diagnostics reports;

    void give_to(StandaloneApp& app);
    void take_module_values();
    void keep_unknown_module_entries();
    Content read();
    Content refuse(const std::string& text, const YamlFault& fault);
    void report(diagnostics::Severity severity, const std::string& message, diagnostics::Code code,
                const YamlFault* place = nullptr);
    void report_damage(diagnostics::Severity severity, const std::string& consequence);
    bool take_lock();
    bool set_damaged_aside();
    std::shared_ptr<ParserGroup> make_content(const StandaloneApp& app) const;
    bool fail_to_save(const std::string& reason);
    bool write(const ParserGroup& preferences);
};

void PreferenceFile::State::give_to(StandaloneApp& app) {
    take_module_values();
    // Whoever handles the application's events may load again.
    const std::shared_ptr<const ParserGroup> read_root = root;
    const bool was_loading = std::exchange(is_loading, true);
    load_preference_fields(*read_root, path, app, reports);
    is_loading = was_loading;
}

void PreferenceFile::State::take_module_values() {
    color_management.reset();
    if (const ParserEntry* const entry = root->find_entry(MODULE_ENTRY))
        copy_values(*entry, color_management, nullptr);
}

// Copies the entries unknown to the module from the file's entry to the one that it has just saved.
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

// Fills `root` from the file, and changes nothing on the disk.
PreferenceFile::State::Content PreferenceFile::State::read() {
    auto text = files::read_whole(path.get_data(), MAX_FILE_SIZE);
    if (!text && text.get_failure().error_number == ENOENT)
        return Content::ABSENT;
    if (!text) {
        report(Severity::ERROR, text.get_failure().describe(), files::to_diagnostic(text.get_failure()).code);
        return Content::UNUSABLE;
    }
    auto read_root = std::make_shared<ParserGroup>(nullptr);
    if (const auto fault = read_yaml(*text, *read_root))
        return refuse(*text, *fault);
    if (!is_preferences(*read_root)) {
        report(Severity::ERROR, "'" + std::string(path.view()) + "' is " + NOT_PREFERENCES,
               Code::PREFERENCES_INVALID);
        return Content::UNUSABLE;
    }
    root = std::move(read_root);
    return Content::READ;
}

// `fault`: why `text` cannot be parsed.
PreferenceFile::State::Content PreferenceFile::State::refuse(const std::string& text,
                                                             const YamlFault& fault) {
    if (is_damaged_preferences(text)) {
        damage = fault;
        return Content::DAMAGED;
    }
    report(Severity::ERROR, fault.reason + "; this is " + NOT_PREFERENCES, Code::PREFERENCES_INVALID, &fault);
    return Content::UNUSABLE;
}

// One line of the log, and one diagnostic.
void PreferenceFile::State::report(Severity severity, const std::string& message, Code code,
                                   const YamlFault* place) {
    diagnostics::Diagnostic diagnostic = diagnostics::make_file_error(code, message, path.get_data());
    diagnostic.severity = severity;
    if (place) {
        diagnostic.line = place->line;
        diagnostic.column = place->column;
    }
    log_message(severity == Severity::ERROR ? LOG_ERROR : LOG_WARNING,
                "Preferences: ", place ? format_located(diagnostic).c_str() : diagnostic.message.c_str(),
                ".\n");
    reports.push_back(std::move(diagnostic));
}

void PreferenceFile::State::report_damage(Severity severity, const std::string& consequence) {
    report(severity, damage->reason + "; " + consequence, Code::PREFERENCES_INVALID, &*damage);
}

// Locks the folder that contains the file after following links; makes it when it is missing.
bool PreferenceFile::State::take_lock() {
    auto target = files::follow_links(path.get_data());
    if (!target)
        return fail_to_save(target.get_failure().reason);
    const std::string folder = files::get_folder(*target);
    const std::string reason = make_folders(folder);
    if (!reason.empty())
        return fail_to_save(reason);
    auto taken = files::Lock::take(folder);
    if (!taken)
        return fail_to_save(taken.get_failure().describe());
    lock.emplace(std::move(*taken));
    return true;
}

bool PreferenceFile::State::set_damaged_aside() {
    auto target = files::follow_links(path.get_data()); // Links stay, and lead to what is written next.
    const std::string kept = target ? set_aside(*target) : std::string();
    if (kept.empty())
        report_damage(Severity::ERROR, "the file cannot be renamed either");
    else
        report_damage(Severity::WARNING, "the file is now '" + kept + "'");
    return !kept.empty();
}

// The content to write: the preferences of `app`, `color_management`, and other entries of the file.
std::shared_ptr<ParserGroup> PreferenceFile::State::make_content(const StandaloneApp& app) const {
    auto preferences = std::make_shared<ParserGroup>(nullptr);
    add_preference_marker(*preferences);
    save_preference_fields(app, *preferences);
    copy_entry(color_management, *preferences);
    for (unsigned int i = 0; i < root->get_entry_count(); ++i) {
        const ParserEntry& entry = *root->get_entry(i);
        if (!is_preference_marker(entry.get_name().view()) && !is_preference_field(entry.get_name()) &&
            entry.get_name() != MODULE_ENTRY)
            copy_entry(entry, *preferences);
    }
    return preferences;
}

bool PreferenceFile::State::fail_to_save(const std::string& reason) {
    report(Severity::ERROR, "cannot save '" + std::string(path.view()) + "': " + reason,
           Code::FILE_UNWRITABLE);
    return false;
}

bool PreferenceFile::State::write(const ParserGroup& preferences) {
    const YamlText yaml = write_yaml(preferences);
    if (!yaml.text)
        return fail_to_save(yaml.reason);
    files::Replacement file(path.get_data(), WRITING_RULES);
    return (file.write(*yaml.text) && file.commit()) || fail_to_save(file.get_failure()->reason);
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
    const State::Content content = state->read();
    if (content == State::Content::DAMAGED)
        state->report_damage(Severity::ERROR, "the file is not used");
    if (content == State::Content::READ)
        state->give_to(app);
    return content == State::Content::READ || content == State::Content::ABSENT;
}

bool PreferenceFile::load_to_change(StandaloneApp& app) {
    if (!state->lock && !state->take_lock())
        return false;
    const State::Content content = state->read();
    if (content == State::Content::READ)
        state->give_to(app);
    if (content == State::Content::UNUSABLE)
        state->lock.reset();
    return content != State::Content::UNUSABLE;
}

diagnostics::Diagnostics PreferenceFile::take_diagnostics() {
    return std::exchange(state->reports, {});
}

ParserEntry& PreferenceFile::get_color_management() {
    return state->color_management;
}

bool PreferenceFile::save(const StandaloneApp& app, const ModuleSave& save_module) {
    if (state->is_loading)
        return state->fail_to_save("it is being loaded");
    if (!state->lock && !state->take_lock())
        return false;
    const std::optional<files::Lock> lock = std::exchange(state->lock, std::nullopt);
    if (save_module)
        save_module(&state->color_management);
    const State::Content content = state->read();
    if (content == State::Content::UNUSABLE)
        return false;
    if (save_module)
        state->keep_unknown_module_entries();
    else
        state->take_module_values();
    if (content == State::Content::DAMAGED && !state->set_damaged_aside())
        return false;
    auto preferences = state->make_content(app);
    if (!state->write(*preferences))
        return false;
    state->root = std::move(preferences);
    return true;
}
