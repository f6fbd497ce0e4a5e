#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

/// Folders with configurations besides those of the project, as ./dev test --configs names them: from the
/// variable QB_TEST_CONFIGS, with ':' between them.
inline std::vector<std::string> get_extra_config_folders() {
    std::vector<std::string> folders;
    if (const char* list = std::getenv("QB_TEST_CONFIGS")) {
        std::istringstream stream(list);
        for (std::string folder; std::getline(stream, folder, ':');)
            if (!folder.empty())
                folders.push_back(folder);
    }
    return folders;
}

/// Paths of the configurations that tests of whole configurations run over: the files *.ocio below
/// tests/configs and below the extra folders, in the order of their names. Throws std::runtime_error if a
/// folder has none, so that a mistyped name does not pass for a green run.
inline std::vector<std::string> find_test_configs() {
    std::vector<std::string> folders = get_extra_config_folders();
    folders.insert(folders.begin(), QB_TEST_CONFIG_FOLDER);
    std::vector<std::string> paths;
    for (const std::string& folder : folders) {
        const size_t count_before = paths.size();
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            if (entry.path().extension() == ".ocio")
                paths.push_back(entry.path().string());
        if (paths.size() == count_before)
            throw std::runtime_error("no configs below " + folder);
        std::sort(paths.begin() + static_cast<std::ptrdiff_t>(count_before), paths.end());
    }
    return paths;
}
