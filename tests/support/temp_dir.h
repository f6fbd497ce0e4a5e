#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A new empty folder that is removed with its content at the end of the scope.
class TempDir {
public:
    TempDir() {
        std::string name = (std::filesystem::temp_directory_path() / "qb_test_XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("cannot create a folder like " + name);
        path = name;
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    /// The folder's path without a final '/'.
    const std::string& get_path() const { return path; }
    /// Path of `name` in the folder, which need not exist.
    std::string file(const std::string& name) const { return path + "/" + name; }

    /// Writes `content` byte for byte to `name`, making missing folders; returns its path.
    std::string write(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories(std::filesystem::path(file(name)).parent_path());
        std::ofstream stream(file(name), std::ios::binary);
        stream << content;
        if (!stream.flush())
            throw std::runtime_error("cannot write " + file(name));
        return file(name);
    }
    /// The bytes of `name`.
    std::string read(const std::string& name) const {
        std::ifstream stream(file(name), std::ios::binary);
        if (!stream)
            throw std::runtime_error("cannot read " + file(name));
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(file(name)); }
    /// Count of files and folders directly in the folder, hidden ones included.
    size_t count_entries() const {
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(path), {}));
    }

private:
    std::string path;
};
