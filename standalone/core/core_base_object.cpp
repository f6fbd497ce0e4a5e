#include "host/core/core_base_object.h"

#include "standalone/core/class_destructor.h"

CoreBaseType::~CoreBaseType() = default;

const CoreClassInfo& CoreBaseType::get_class_info() const {
    return class_info();
}

const CoreClassInfo& CoreBaseType::class_info() {
    static const CoreClassInfo& info = CoreClassInfo::new_class("CoreBaseType", destroy_object<CoreBaseType>);
    return info;
}

const CoreClassInfo& CoreBaseObject::get_class_info() const {
    return class_info();
}

const CoreClassInfo& CoreBaseObject::class_info() {
    static const CoreClassInfo& info = CoreClassInfo::new_class(
        "CoreBaseObject", destroy_object<CoreBaseObject>, CoreBaseType::class_info(), nullptr);
    return info;
}

const CoreClassInfo& CoreCustomData::get_class_info() const {
    return class_info();
}

const CoreClassInfo& CoreCustomData::class_info() {
    static const CoreClassInfo& info = CoreClassInfo::new_class(
        "CoreCustomData", destroy_object<CoreCustomData>, CoreBaseObject::class_info(), nullptr);
    return info;
}
