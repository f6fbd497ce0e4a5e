#include "host/core/core_class_info.h"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace {

// Never destroyed: libraries unloaded at the end of the process may still look their classes up.
struct ClassRegistry {
    std::mutex mutex;
    std::unordered_map<std::string, std::unique_ptr<CoreClassInfo>> classes;

    static ClassRegistry& get() {
        static auto* const registry = new ClassRegistry;
        return *registry;
    }
};

} // namespace

const CoreClassInfo& CoreClassInfo::new_class(const char* name, ClassDestructor destructor) {
    return add_class(name, destructor, nullptr, nullptr);
}

const CoreClassInfo& CoreClassInfo::new_class(const char* name, ClassDestructor destructor,
                                              const CoreClassInfo& base, void* user_data) {
    return add_class(name, destructor, &base, user_data);
}

const CoreClassInfo& CoreClassInfo::add_class(const CoreString& name, ClassDestructor destructor,
                                              const CoreClassInfo* base, void* user_data) {
    ClassRegistry& registry = ClassRegistry::get();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    std::unique_ptr<CoreClassInfo>& info = registry.classes[std::string(name.view())];
    if (!info) {
        info.reset(new CoreClassInfo);
        info->name = name;
        info->destructor = destructor;
        info->base = base;
        info->user_data = user_data;
    }
    return *info;
}

const CoreClassInfo* CoreClassInfo::find(const CoreBasicString& name) {
    ClassRegistry& registry = ClassRegistry::get();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    const auto found = registry.classes.find(std::string(name.view()));
    return found == registry.classes.end() ? nullptr : found->second.get();
}

bool CoreClassInfo::is_kind_of(const CoreClassInfo& other) const {
    const CoreClassInfo* info = this;
    while (info && info != &other)
        info = info->base;
    return info != nullptr;
}
