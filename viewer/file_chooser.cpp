#include "viewer/file_chooser.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <fmt/format.h>

#include "diagnostics/file_failure.h"

namespace viewer {

namespace {

namespace fs = std::filesystem;
using diagnostics::Code;

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

/// "shot_2" comes before "shot_10".
bool comes_before(const FileChooser::Entry& a, const FileChooser::Entry& b) {
    if (a.is_folder != b.is_folder)
        return a.is_folder;
    const int order = strverscmp(lower(a.name).c_str(), lower(b.name).c_str());
    return order != 0 ? order < 0 : a.name < b.name;
}

/// Without a '/' at the end.
fs::path normalized(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path.empty() ? "." : path, error).lexically_normal();
    return absolute.has_filename() || absolute == absolute.root_path() ? absolute : absolute.parent_path();
}

std::string get_home() {
    const char* home = std::getenv("HOME");
    return home ? home : "";
}

} // namespace

FileChooser::FileChooser(const std::string& start, std::vector<std::string> wanted_extensions)
    : extensions(std::move(wanted_extensions)) {
    fs::path path = normalized(start);
    while (!list(path.string()) && path != path.root_path())
        path = path.parent_path();
    last_error.reset();
}

/// False, and nothing but the error changed, when the folder cannot be read.
bool FileChooser::list(const std::string& path) {
    std::error_code error;
    std::vector<Entry> found;
    for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        const Entry entry = {at->path().filename().string(), at->is_directory(ignored)};
        // Reading a pipe or a device might never end.
        if (entry.name.front() != '.' && (entry.is_folder || at->is_regular_file(ignored)) &&
            is_listed(entry))
            found.push_back(entry);
    }
    if (error) {
        const bool is_missing = error == std::errc::no_such_file_or_directory;
        last_error = diagnostics::make_file_error(
            is_missing ? Code::FILE_MISSING : Code::FILE_UNREADABLE,
            fmt::format("cannot read the folder '{}': {}", path, error.message()), path);
        return false;
    }
    std::sort(found.begin(), found.end(), comes_before);
    entries = std::move(found);
    folder = path;
    selected = 0;
    last_error.reset();
    return true;
}

bool FileChooser::is_listed(const Entry& entry) const {
    if (entry.is_folder || shows_all)
        return true;
    const std::string extension = lower(fs::path(entry.name).extension().string());
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

void FileChooser::enter(const std::string& path) {
    list(normalized(fs::path(folder) / path).string());
}

void FileChooser::go_up() {
    const fs::path former = folder;
    if (!list(former.parent_path().string()))
        return;
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.is_folder && entry.name == former.filename();
    });
    if (found != entries.end())
        selected = static_cast<std::size_t>(found - entries.begin());
}

void FileChooser::go_home() {
    const std::string home = get_home();
    if (home.empty())
        last_error = diagnostics::make_error(Code::FILE_MISSING,
                                             "the environment variable HOME is not set to a folder", "HOME");
    else
        enter(home);
}

std::string FileChooser::get_shown_folder() const {
    const std::string home = normalized(get_home()).string();
    if (get_home().empty() || home == "/" || folder.compare(0, home.size(), home) != 0)
        return folder;
    const std::string below = folder.substr(home.size());
    return below.empty() || below.front() == '/' ? "~" + below : folder;
}

void FileChooser::set_shows_all(bool shown) {
    shows_all = shown;
    list(folder);
}

void FileChooser::select(std::size_t position) {
    selected = std::min(position, entries.size());
}

void FileChooser::move_selection(int by) {
    if (entries.empty())
        return;
    const auto last = static_cast<std::ptrdiff_t>(entries.size()) - 1;
    const std::ptrdiff_t wanted = static_cast<std::ptrdiff_t>(selected) + by;
    selected = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(wanted, 0, last));
}

std::optional<std::string> FileChooser::choose_selected() {
    if (selected >= entries.size())
        return {};
    return choose((fs::path(folder) / entries[selected].name).string());
}

std::optional<std::string> FileChooser::choose_typed(const std::string& text) {
    last_error.reset();
    if (text.empty())
        return {};
    const bool from_home = text == "~" || text.compare(0, 2, "~/") == 0;
    const fs::path path = from_home
                              ? fs::path(get_home()) / text.substr(std::min<std::size_t>(2, text.size()))
                              : fs::path(text);
    return choose((fs::path(folder) / path).string());
}

std::optional<std::string> FileChooser::choose(const std::string& path) {
    const fs::path wanted = normalized(path);
    std::error_code error;
    const fs::file_status status = fs::status(wanted, error);
    if (fs::is_directory(status)) {
        list(wanted.string());
        return {};
    }
    if (fs::is_regular_file(status)) {
        last_error.reset();
        return wanted.string();
    }
    const bool is_missing = status.type() == fs::file_type::not_found;
    last_error = diagnostics::make_read_error(
        is_missing ? Code::FILE_MISSING : Code::FILE_NOT_REGULAR, wanted.string(),
        is_missing ? diagnostics::NO_SUCH_FILE : diagnostics::NOT_A_REGULAR_FILE);
    return {};
}

} // namespace viewer
