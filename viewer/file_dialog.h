#pragma once

#include <optional>
#include <string>
#include <vector>

#include "viewer/file_chooser.h"
#include "viewer/items.h"

namespace viewer {

/// A modal dialog for choosing a file with mouse or keyboard: arrows select, Enter opens, Escape cancels;
/// typed text is a path.
class FileDialog {
public:
    /// Opens it in a folder, or in the nearest one above it that can be read.
    void open(const std::string& title, const std::string& folder,
              const std::vector<std::string>& extensions);
    void close() { chooser.reset(); }
    bool is_open() const { return chooser.has_value(); }
    /// Shows why the chosen file is unusable; the dialog stays open.
    void set_error(const diagnostics::Diagnostic& error);

    /// Builds the dialog. Returns the path in the frame in which a file is chosen; the dialog stays open
    /// until `close`.
    std::optional<std::string> show(Items& items);

private:
    std::optional<std::string> show_content(Items& items);
    void show_folder(Items& items);
    void show_path(Items& items);
    std::optional<std::string> show_entries(Items& items);
    std::optional<std::string> show_buttons(Items& items);
    std::optional<std::string> follow_keys();
    std::optional<std::string> choose();
    void keep_selection_in_view() const;

    std::string title = "none";
    std::optional<FileChooser> chooser;
    std::string path; ///< As typed.
    bool takes_focus = false;
    bool selection_moved = false;
};

} // namespace viewer
