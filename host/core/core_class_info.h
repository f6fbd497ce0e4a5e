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
    /// Registers a class derived from `base`; `user_data` is stored, not owned and not read. Registering a
    /// name again returns the first registration.
    static const CoreClassInfo& new_class(const char* name, ClassDestructor destructor,
                                          const CoreClassInfo& base, void* user_data);
    /// The registered class of that name, or null.
    static const CoreClassInfo* find(const CoreBasicString& name);

    /// Name given at registration.
    const CoreString& get_name() const { return name; }
    /// Base class; null for a root.
    const CoreClassInfo* get_base() const { return base; }
    /// Destructor given at registration.
    ClassDestructor get_destructor() const { return destructor; }
    /// Pointer given at registration; null for a root.
    void* get_user_data() const { return user_data; }
    /// True when `other` is this class or one of its bases.
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
