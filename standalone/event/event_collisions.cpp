#include <algorithm>
#include <cstdio>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/event/event_ids.h"

namespace {

// Made on first use, which is before main, and never destroyed.
struct EventRegistry {
    std::mutex mutex;
    std::unordered_map<unsigned int, std::vector<std::string>> names_by_hash;

    static EventRegistry& get() {
        static auto* const registry = new EventRegistry;
        return *registry;
    }
};

} // namespace

bool event_debug_collisions(unsigned int hash, const CoreString& name) {
    EventRegistry& registry = EventRegistry::get();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    std::vector<std::string>& names = registry.names_by_hash[hash];
    if (std::find(names.begin(), names.end(), name.view()) == names.end()) {
        if (!names.empty())
            std::fprintf(stderr, "Event '%s' has the same hash 0x%08X as event '%s'.\n", name.get_data(),
                         hash, names.front().c_str());
        names.emplace_back(name.view());
    }
    return names.size() > 1;
}
