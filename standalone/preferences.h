#pragma once

#include <functional>
#include <memory>

#include "diagnostics/diagnostic.h"
#include "host/core/core_string.h"
#include "host/host_export.h"

class ParserEntry;
class StandaloneApp;

/// The preferences file: the preferences of a StandaloneApp and of the color-management module. It is private
/// to the user (mode 0600, in a folder that is made with mode 0700). For one thread at a time.
///
/// Every save replaces the file as a whole, so that the old or the new file exists even if the process is
/// killed. A process that loads with `load_to_change` locks out others until it has saved, so that concurrent
/// changes are not lost. Unknown entries, in the file or in the module's group, are kept when it saves.
///
/// A preferences file is marked by its entry "file_type"; files of earlier versions without it are recognized
/// by their entries (preference_marker.h). Any other file is neither used nor changed, and anything but a
/// regular file is refused. A damaged preferences file is renamed ("preferences.yaml.damaged-1", and so on)
/// before a new one is saved; loading changes nothing on disk.
class HOST_API PreferenceFile {
public:
    /// Writes the module's preferences into an entry, after resetting it; returns whether it wrote any.
    using ModuleSave = std::function<bool(ParserEntry* entry)>;

    /// Does not access the file yet.
    explicit PreferenceFile(const CoreString& path);
    ~PreferenceFile();
    PreferenceFile(const PreferenceFile&) = delete;
    PreferenceFile& operator=(const PreferenceFile&) = delete;

    /// "qb_colorio/preferences.yaml" in $XDG_CONFIG_HOME or "~/.config"; empty when the user has no home
    /// folder.
    static CoreString get_default_path();

    /// Sets the preferences of `app` from the file; unchanged without a file. False, with a message at level
    /// 1, when the file cannot be read or parsed; `app` is then unchanged.
    bool load(StandaloneApp& app);

    /// The same for a program that will save changes: makes the folder, and takes a lock that is held until
    /// `save` or the end of this object. False, with a message at level 1, when the file cannot be read or
    /// locked, or is not a preferences file. A damaged one, which `save` renames, is treated as missing. Two
    /// objects in one process would wait for each other.
    bool load_to_change(StandaloneApp& app);

    /// Errors and warnings since the last call; there is an error for every operation that returned false.
    diagnostics::Diagnostics take_diagnostics();

    /// The entry "color_management" as last loaded, for the module's `load_config`. The reference is valid as
    /// long as this object.
    ParserEntry& get_color_management();

    /// Saves the preferences of `app`, and those of the module if `save_module` is not empty; else the
    /// module's are unchanged in the file. False, with a message at level 1, when the file cannot be written
    /// or read, is not a preferences file, or is being loaded (a handler of an event raised by loading must
    /// not save, since `app` does not have all its preferences yet).
    bool save(const StandaloneApp& app, const ModuleSave& save_module);

private:
    struct State;
    std::unique_ptr<State> state;
};
