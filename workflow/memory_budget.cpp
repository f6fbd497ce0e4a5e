#include "workflow/memory_budget.h"

#include <charconv>
#include <cmath>

#include <strings.h>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "diagnostics/failure.h"

namespace workflow {

bool MemoryBudget::try_to_take(std::uint64_t bytes) {
    std::lock_guard<std::mutex> lock(mutex);
    const bool is_free = has_room(bytes);
    if (is_free)
        taken += bytes;
    return is_free;
}

void MemoryBudget::take(std::uint64_t bytes) {
    std::unique_lock<std::mutex> lock(mutex);
    change.wait(lock, [&] { return has_room(bytes); });
    taken += bytes;
}

void MemoryBudget::give_back(std::uint64_t bytes) {
    {
        std::lock_guard<std::mutex> lock(mutex);
        taken -= bytes;
    }
    change.notify_all();
}

bool MemoryShare::try_to_hold(std::uint64_t bytes) {
    if (!budget || bytes <= held)
        return true;
    if (!budget->try_to_take(bytes - held))
        return false;
    held = bytes;
    return true;
}

void MemoryShare::hold(std::uint64_t bytes) {
    release();
    if (!budget)
        return;
    budget->take(bytes);
    held = bytes;
}

void MemoryShare::release() {
    if (budget && held > 0)
        budget->give_back(held);
    held = 0;
}

std::uint64_t get_default_memory() {
    return OIIO::Sysutil::physical_memory() / 2;
}

std::uint64_t get_used_memory() {
    return OIIO::Sysutil::memory_used(true);
}

std::uint64_t parse_memory_size(const std::string& text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    std::string unit(rest, end);
    constexpr const char* UNITS[] = {"", "K", "M", "G", "T"};
    for (int power = 0; power < 5 && error == std::errc() && number > 0; ++power)
        for (const char* suffix : {"", "B", "iB"}) {
            const double bytes = std::ldexp(number, 10 * power);
            if (strcasecmp(unit.c_str(), (UNITS[power] + std::string(suffix)).c_str()) == 0 && bytes >= 1 &&
                bytes < 1e18)
                return static_cast<std::uint64_t>(bytes);
        }
    diagnostics::fail(diagnostics::Code::USAGE, fmt::format("invalid size '{}'", text),
                      "examples: 500M, 1.5G");
}

} // namespace workflow
