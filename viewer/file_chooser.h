#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "diagnostics/diagnostic.h"

namespace viewer {

/// Model of the file dialog: the folders and files of one folder, without hidden ones, and the selection.
class FileChooser {
public:
    struct Entry {
        std::string name;
        bool is_folder;
    };

    /// Starts in `folder`, or in the nearest folder above it that can be read. Lists files of these
    /// extensions (".ocio", any case).
    FileChooser(const std::string& folder, std::vector<std::string> extensions);

    /// Absolute path.
    const std::string& get_folder() const { return folder; }
    /// The same for the user, with "~" for the home folder.
    std::string get_shown_folder() const;
    /// Folders, then files, both by name without regard to case, numbers by their value.
    const std::vector<Entry>& get_entries() const { return entries; }
    /// The error of the last operation; empty when it succeeded.
    const std::optional<diagnostics::Diagnostic>& get_error() const { return last_error; }
    void set_error(diagnostics::Diagnostic error) { last_error = std::move(error); }

    /// Goes to a folder. When it cannot be read, that is the error, and the current folder stays.
    void enter(const std::string& path);
    /// Goes to the parent folder and selects the current one there.
    void go_up();
    void go_home();
    /// Lists files of any extension.
    void set_shows_all(bool shown);
    bool get_shows_all() const { return shows_all; }

    /// Position of the selected entry; the count of entries when there is none.
    std::size_t get_selected() const { return selected; }
    void select(std::size_t position);
    /// Moves the selection down (or up for negative numbers), within the list.
    void move_selection(int by);

    /// Goes to the selected folder, or returns the path of the selected file.
    std::optional<std::string> choose_selected();
    /// The same for a typed path: absolute, relative to the folder, or starting with "~". A file need not be
    /// listed. A path that does not exist is an error.
    std::optional<std::string> choose_typed(const std::string& text);

private:
    bool list(const std::string& path);
    bool is_listed(const Entry& entry) const;
    std::optional<std::string> choose(const std::string& path);

    std::vector<std::string> extensions;
    bool shows_all = false;
    std::string folder;
    std::vector<Entry> entries;
    std::size_t selected = 0;
    std::optional<diagnostics::Diagnostic> last_error;
};

} // namespace viewer
