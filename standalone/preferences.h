#pragma once

#include <functional>
#include <memory>

#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"
#include "host/host_export.h"

class ParserEntry;
class StandaloneApp;

/// The file that keeps a StandaloneApp's preferences, and those of the color-management module, from run to
/// run. It is for this user alone (mode 0600, in a folder that is made with mode 0700).
///
/// Every save replaces the file whole, so the old or the new file is there even if the process is killed. A
/// process that loads with `load_to_change` keeps others from doing so until it has saved, so that of changes
/// made at the same time none is lost. Entries that this program does not know, in the file or in the
/// module's group, are kept when it saves.
///
/// A preferences file says so itself, in its entry "file_type"; earlier versions, which lack it, are
/// recognized by their entries (preference_marker.h). Any other file is neither used nor changed, and
/// anything but a regular file is refused. A damaged preferences file is renamed
/// ("preferences.yaml.damaged-1", and so on) before a new one is saved; loading changes nothing.
class HOST_API PreferenceFile {
public:
    /// Has the module write its preferences into an entry, after resetting it; answers whether it wrote any.
    using ModuleSave = std::function<bool(ParserEntry* entry)>;

    explicit PreferenceFile(const CoreString& path);
    ~PreferenceFile();
    PreferenceFile(const PreferenceFile&) = delete;
    PreferenceFile& operator=(const PreferenceFile&) = delete;

    /// "qb_colorio/preferences.yaml" in $XDG_CONFIG_HOME or "~/.config"; empty when the user has no home.
    static CoreString get_default_path();

    /// Gives `app` what the file holds; without a file everything stays as it is. False, with a message at
    /// level 1, when there is a file that cannot be read or understood; `app` is then unchanged.
    bool load(StandaloneApp& app);

    /// The same for a program that will save what it changes: makes the folder, and takes the lock that keeps
    /// others out until `save` ends, or this object. False, with a message at level 1, when nothing may be
    /// changed: the file cannot be read or locked, or is not a preferences file. A damaged one, which `save`
    /// renames, counts as none. Two objects of one process would wait for each other.
    bool load_to_change(StandaloneApp& app);

    /// What was wrong with the file, since the last call: an error for every call that answered false.
    diagnostics::Diagnostics take_diagnostics();

    /// The entry "color_management" as last loaded, for the module to load from: its group has the module's
    /// entries. Stays at its address.
    ParserEntry& get_color_management();

    /// Saves the preferences of `app`, and those of the module when `save_module` is not empty; else the
    /// module's stay as they are in the file. False, with a message at level 1, when the file cannot be
    /// written, cannot be read, is not a preferences file, or is being loaded: events that loading raises
    /// find an application that does not have all its preferences yet.
    bool save(const StandaloneApp& app, const ModuleSave& save_module);

private:
    struct State;
    std::unique_ptr<State> state;
};
