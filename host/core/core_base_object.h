#pragma once

#include "host/core/core_class_info.h"
#include "host/host_export.h"

/// Root of every class that the host describes at run time.
class HOST_API CoreBaseType {
public:
    virtual ~CoreBaseType();
    virtual const CoreClassInfo& get_class_info() const;
    static const CoreClassInfo& class_info();
};

/// A described object.
class HOST_API CoreBaseObject : public CoreBaseType {
public:
    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();
};

/// A described object that other code may attach data to.
class HOST_API CoreCustomData : public CoreBaseObject {
public:
    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();
};
