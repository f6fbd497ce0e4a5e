#include "files/temporary_name.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>

namespace files {

namespace {

constexpr std::string_view PREFIX = ".qb_colorio-";
constexpr std::string_view MARK = ".tmp";

} // namespace

std::string make_temporary_name(std::string_view extension) {
    static std::atomic<unsigned int> counter{0};
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    char number[64];
    std::snprintf(number, sizeof number, "%ld-%u-%llx", static_cast<long>(getpid()), counter++,
                  static_cast<unsigned long long>(now));
    return std::string(PREFIX) + number + std::string(MARK) + std::string(extension);
}

bool is_temporary_name(std::string_view name) {
    return name.substr(0, PREFIX.size()) == PREFIX && name.find(MARK, PREFIX.size()) != name.npos;
}

} // namespace files
