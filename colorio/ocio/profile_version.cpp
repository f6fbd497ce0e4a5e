#include "colorio/ocio/profile_version.h"

#include <fstream>
#include <optional>
#include <string_view>
#include <utility>

#include "colorio/ocio/types.h"
#include "colorio/ocio/xml_root.h"

namespace ocio {

namespace {

constexpr std::string_view VERSION_KEY = "ocio_profile_version:";
constexpr std::string_view DIGITS = "0123456789";
/// More digits than any version has, few enough for an int.
constexpr std::size_t MAX_VERSION_DIGITS = 6;

using Version = std::pair<int, int>; // major, minor

/// The number that `text` starts with, taken off it.
std::optional<int> take_number(std::string_view& text) {
    const std::size_t length = std::min(text.find_first_not_of(DIGITS), text.size());
    if (length == 0 || length > MAX_VERSION_DIGITS)
        return std::nullopt;
    const int number = std::stoi(std::string(text.substr(0, length)));
    text.remove_prefix(length);
    return number;
}

/// "2", "2.4" or "2.1.2"; what follows the second number is ignored.
std::optional<Version> parse_version(std::string_view text) {
    const std::optional<int> major = take_number(text);
    if (!major)
        return std::nullopt;
    if (text.substr(0, 1) != ".")
        return Version(*major, 0);
    text.remove_prefix(1);
    return Version(*major, take_number(text).value_or(0));
}

std::optional<Version> read_profile_version(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
        if (line.compare(0, VERSION_KEY.size(), VERSION_KEY) != 0)
            continue;
        const std::size_t start = line.find_first_not_of(" \t\"'", VERSION_KEY.size());
        return start == std::string::npos ? std::nullopt : parse_version(line.c_str() + start);
    }
    return std::nullopt;
}

/// The first version of OpenColorIO that contains configs, and that reads archives of a config with its LUTs.
constexpr std::string_view ARCHIVE_MARK = "PK\x03\x04";
constexpr Version FIRST_WITH_ARCHIVES = {2, 2};

bool is_archive(const std::string& path) {
    std::string mark(ARCHIVE_MARK.size(), '\0');
    std::ifstream file(path, std::ios::binary);
    return file.read(mark.data(), static_cast<std::streamsize>(mark.size())) && mark == ARCHIVE_MARK;
}

} // namespace

bool is_library_config(const std::string& path) {
    return path.rfind("ocio://", 0) == 0;
}

std::string describe_newer_profile(const std::string& path) {
    const std::optional<Version> supported = parse_version(get_version());
    if (supported && *supported < FIRST_WITH_ARCHIVES && is_library_config(path))
        return path + " is a config inside OpenColorIO and needs a newer OpenColorIO than " + get_version() +
               ": 2.2 or later";
    if (supported && *supported < FIRST_WITH_ARCHIVES && is_archive(path))
        return path + " is an archived OCIO config (.ocioz) and needs a newer OpenColorIO than " +
               get_version() + ": 2.2 or later. Extract it, and use its config.ocio";
    const std::optional<Version> profile = read_profile_version(path);
    if (!profile || !supported || *profile <= *supported)
        return {};
    return path + " is an OCIO " + std::to_string(profile->first) + "." + std::to_string(profile->second) +
           " config and needs a newer OpenColorIO than " + get_version();
}

std::string find_newer_transform_version(const std::string& path) {
    constexpr Version NEWEST_CLF(3, 0);
    const std::string clf_version = xml_root_attribute(path, "compCLFversion");
    const std::optional<Version> clf = parse_version(clf_version);
    if (clf && *clf > NEWEST_CLF)
        return clf_version;
    const std::string version = xml_root_attribute(path, "version");
    const std::optional<Version> declared = parse_version(version);
    const std::optional<Version> supported = parse_version(get_version());
    return declared && supported && *declared > *supported ? version : "";
}

} // namespace ocio
