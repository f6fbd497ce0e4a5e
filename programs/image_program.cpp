#include "programs/image_program.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <fmt/format.h>
#include <unistd.h>

#include "diagnostics/failure.h"

namespace tool {

namespace {

/// What cannot be done, and why.
[[noreturn]] void fail(const std::string& what, const std::string& reason) {
    diagnostics::fail(diagnostics::Code::SYSTEM_FAILURE, fmt::format("cannot {}: {}", what, reason),
                      "is colorio installed completely?");
}

} // namespace

std::string get_image_program() {
    std::error_code error;
    const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error)
        fail("find the folder of this program", error.message());
    return (here.parent_path() / IMAGE_PROGRAM).lexically_normal();
}

void become_image_program(char* arguments[]) {
    const std::string program = get_image_program();
    execv(program.c_str(), arguments);
    fail(fmt::format("run '{}'", program), std::strerror(errno));
}

} // namespace tool
