#include <map>
#include <memory>
#include <mutex>

#include "host/of/of_app.h"
#include "host/of/of_enum.h"

const CoreClassInfo& CoreClassInfo::add_class(const CoreString& name, ClassDestructor destructor,
                                              const CoreClassInfo* base, void* user_data) {
    static std::mutex mutex;
    static auto* const classes =
        new std::map<CoreString, CoreClassInfo>; // never destroyed: used until the end
    const std::lock_guard<std::mutex> lock(mutex);
    const auto [position, is_new] = classes->try_emplace(name, CoreClassInfo());
    CoreClassInfo& info = position->second;
    if (is_new) {
        info.name = name;
        info.destructor = destructor;
        info.base = base;
        info.user_data = user_data;
    }
    return info;
}

const CoreClassInfo& CoreClassInfo::new_class(const char* name, ClassDestructor destructor) {
    return add_class(name, destructor, nullptr, nullptr);
}

const CoreClassInfo& CoreClassInfo::new_class(const char* name, ClassDestructor destructor,
                                              const CoreClassInfo& base, void* user_data) {
    return add_class(name, destructor, &base, user_data);
}

namespace {

template <class Class>
bool destroy(void* object, const bool& array) {
    if (array)
        delete[] static_cast<Class*>(object);
    else
        delete static_cast<Class*>(object);
    return true;
}

} // namespace

CoreBaseType::~CoreBaseType() = default;
const CoreClassInfo& CoreBaseType::class_info() {
    static const CoreClassInfo& info = CoreClassInfo::new_class("CoreBaseType", destroy<CoreBaseType>);
    return info;
}
const CoreClassInfo& CoreBaseType::get_class_info() const {
    return class_info();
}

#define DESCRIBE(Class, Base)                                                                                \
    const CoreClassInfo& Class::class_info() {                                                               \
        static const CoreClassInfo& info =                                                                   \
            CoreClassInfo::new_class(#Class, destroy<Class>, Base::class_info(), nullptr);                   \
        return info;                                                                                         \
    }                                                                                                        \
    const CoreClassInfo& Class::get_class_info() const {                                                     \
        return class_info();                                                                                 \
    }

DESCRIBE(CoreBaseObject, CoreBaseType)
DESCRIBE(CoreCustomData, CoreBaseObject)
DESCRIBE(EventObject, CoreCustomData)
DESCRIBE(OfApp, EventObject)
DESCRIBE(OfEnum, EventObject)
