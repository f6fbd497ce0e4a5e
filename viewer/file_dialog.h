#pragma once

#include <optional>
#include <string>
#include <vector>

#include "viewer/file_chooser.h"
#include "viewer/items.h"

namespace viewer {

/// A dialogue above everything else in which one looks for a file, by mouse or by keys: arrows select, Enter
/// opens, Escape leaves; whatever is typed is a path.
class FileDialog {
public:
    /// Opens it in a folder, or in the nearest one above it that can be read.
    void open(const std::string& title, const std::string& folder,
              const std::vector<std::string>& extensions);
    void close() { chooser.reset(); }
    bool is_open() const { return chooser.has_value(); }
    /// Says why the file that was chosen will not do; the dialogue stays.
    void set_fault(const std::string& text);

    /// Declares it. The path of the file, in the frame in which one is chosen; the dialogue stays open until
    /// it is closed.
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
