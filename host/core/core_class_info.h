#pragma once

#include "host/core/core_string.h"
#include "host/host_export.h"

/// Run-time description of one registered class; lives as long as the process.
class HOST_API CoreClassInfo {
public:
    /// Destroys and frees `object` (an array of objects when `array` is true); null is accepted. Returns
    /// success.
    using ClassDestructor = bool (*)(void* object, const bool& array);

    /// Registers the root of a class chain.
    static const CoreClassInfo& new_class(const char* name, ClassDestructor destructor);
    /// Registers a class derived from `base`; `user_data` is kept and never looked at. Registering a name
    /// again returns the first registration.
    static const CoreClassInfo& new_class(const char* name, ClassDestructor destructor,
                                          const CoreClassInfo& base, void* user_data);
    /// The registered class of that name, or null.
    static const CoreClassInfo* find(const CoreBasicString& name);

    const CoreString& get_name() const { return name; }
    const CoreClassInfo* get_base() const { return base; }
    ClassDestructor get_destructor() const { return destructor; }
    void* get_user_data() const { return user_data; }
    /// True for the class itself and every class it derives from.
    bool is_kind_of(const CoreClassInfo& other) const;

private:
    CoreClassInfo() = default;
    static const CoreClassInfo& add_class(const CoreString& name, ClassDestructor destructor,
                                          const CoreClassInfo* base, void* user_data);

    CoreString name;
    ClassDestructor destructor = nullptr;
    const CoreClassInfo* base = nullptr;
    void* user_data = nullptr;
};
