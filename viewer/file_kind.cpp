#include "viewer/file_kind.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include <OpenImageIO/imageio.h>

namespace viewer {

namespace {

/// From the library's list, "bmp:bmp;jpeg:jpg,jpe,jpeg".
std::vector<std::string> find_image_extensions() {
    std::vector<std::string> extensions;
    std::istringstream formats(OIIO::get_string_attribute("extension_list"));
    for (std::string format; std::getline(formats, format, ';');) {
        std::istringstream names(format.substr(format.find(':') + 1));
        for (std::string name; std::getline(names, name, ',');)
            extensions.push_back("." + name);
    }
    return extensions;
}

} // namespace

const std::vector<std::string>& get_extensions(FileKind kind) {
    static const std::vector<std::string> CONFIGS = {".ocio", ".ocioz"};
    static const std::vector<std::string> CDL_LIBRARIES = {".cc", ".ccc", ".cdl"};
    static const std::vector<std::string> IMAGES = find_image_extensions();
    switch (kind) {
    case FileKind::CONFIG:
        return CONFIGS;
    case FileKind::CDL_LIBRARY:
        return CDL_LIBRARIES;
    default:
        return IMAGES;
    }
}

FileKind get_file_kind(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    for (const FileKind kind : {FileKind::CONFIG, FileKind::CDL_LIBRARY}) {
        const std::vector<std::string>& extensions = get_extensions(kind);
        if (std::find(extensions.begin(), extensions.end(), extension) != extensions.end())
            return kind;
    }
    return FileKind::IMAGE;
}

} // namespace viewer
