#include "host/of/of_app.h"

#include "standalone/core/class_destructor.h"

const CoreClassInfo& OfApp::get_class_info() const {
    return class_info();
}

const CoreClassInfo& OfApp::class_info() {
    static const CoreClassInfo& info =
        CoreClassInfo::new_class("OfApp", destroy_object<OfApp>, EventObject::class_info(), nullptr);
    return info;
}
