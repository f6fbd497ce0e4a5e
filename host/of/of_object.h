#pragma once

#include "host/core/core_base_object.h"
#include "host/host_export.h"

/// An object of a scene. Color management only passes pointers to it.
class HOST_API OfObject : public CoreCustomData {
public:
    const CoreClassInfo& get_class_info() const override;
    static const CoreClassInfo& class_info();
};
