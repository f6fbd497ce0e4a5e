#include "conformance/check.h"
#include "host/core/core_class_info.h"
#include "host/event/event_object.h"

namespace conformance {

namespace {

bool destroy_nothing(void*, const bool&) {
    return true;
}

void check_registration(Findings& findings) {
    int data = 0;
    const CoreClassInfo& base = EventObject::class_info();
    const CoreClassInfo& info = CoreClassInfo::new_class("ConformanceObject", destroy_nothing, base, &data);
    findings.expect_text(info.get_name().view(), "ConformanceObject", "the name");
    findings.expect(info.get_base() == &base, "the base class is kept");
    findings.expect(info.get_destructor() == destroy_nothing, "the destructor is kept");
    findings.expect(info.get_user_data() == &data, "the user data is kept");
    findings.expect(&CoreClassInfo::new_class("ConformanceObject", destroy_nothing, base, nullptr) == &info,
                    "a name registered again returns the first registration");
}

void check_chain(Findings& findings) {
    std::string chain;
    for (const CoreClassInfo* info = &EventObject::class_info(); info; info = info->get_base())
        chain.append(info->get_name().view()).append(" ");
    findings.expect_text(chain, "EventObject CoreCustomData CoreBaseObject CoreBaseType ", "the classes");
    EventObject object;
    const CoreBaseType& described = object;
    findings.expect(&described.get_class_info() == &EventObject::class_info(),
                    "an object returns its class through its base class");
}

} // namespace

Checks list_class_checks() {
    return {
        {"classes.registration", "a registered class keeps what it was registered with, and exists once",
         "the host does not find the class 'ColorIO'", check_registration},
        {"classes.chain", "EventObject is registered below its base classes",
         "the host does not take the ColorIO object for an EventObject", check_chain},
    };
}

} // namespace conformance
