#include "host/of/of_object.h"

#include "standalone/core/class_destructor.h"

const CoreClassInfo& OfObject::get_class_info() const {
    return class_info();
}

const CoreClassInfo& OfObject::class_info() {
    static const CoreClassInfo& info =
        CoreClassInfo::new_class("OfObject", destroy_object<OfObject>, CoreCustomData::class_info(), nullptr);
    return info;
}
