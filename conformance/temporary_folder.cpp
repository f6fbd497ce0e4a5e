#include "conformance/temporary_folder.h"

#include <stdlib.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "conformance/check.h"

namespace conformance {

TemporaryFolder::TemporaryFolder() {
    const char* const chosen = getenv("TMPDIR");
    std::string pattern = std::string(chosen && *chosen ? chosen : "/tmp") + "/conformance-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw CannotRun("cannot create a folder '" + pattern + "': " + strerror(errno));
    path = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const {
    const std::string file = path + "/" + name;
    std::ofstream stream(file, std::ios::binary);
    if (!stream.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
        throw CannotRun("cannot write '" + file + "'");
    return file;
}

std::string TemporaryFolder::read(const std::string& name) const {
    std::ifstream stream(path + "/" + name, std::ios::binary);
    if (!stream)
        return "(no file)";
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace conformance
