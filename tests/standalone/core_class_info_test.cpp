#include "host/core/core_class_info.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "host/core/core_base_object.h"
#include "host/event/event_object.h"
#include "host/of/of_app.h"
#include "host/of/of_enum.h"
#include "host/of/of_object.h"
#include "host/of/of_object_factory.h"
#include "standalone/standalone_app.h"

namespace {

TEST(CoreClassInfo, TheHostsClassesFormTheirChains) {
    const CoreClassInfo& app = StandaloneApp::class_info();
    EXPECT_EQ(app.get_name(), "StandaloneApp");
    const char* expected[] = {"StandaloneApp",  "OfApp",          "EventObject",
                              "CoreCustomData", "CoreBaseObject", "CoreBaseType"};
    const CoreClassInfo* info = &app;
    for (const char* name : expected) {
        ASSERT_NE(info, nullptr) << name;
        EXPECT_EQ(info->get_name(), name);
        info = info->get_base();
    }
    EXPECT_EQ(info, nullptr);
}

TEST(CoreClassInfo, KindIncludesTheClassAndItsBasesOnly) {
    EXPECT_TRUE(EventObject::class_info().is_kind_of(EventObject::class_info()));
    EXPECT_TRUE(EventObject::class_info().is_kind_of(CoreBaseType::class_info()));
    EXPECT_FALSE(CoreBaseType::class_info().is_kind_of(EventObject::class_info()));
    EXPECT_FALSE(OfObject::class_info().is_kind_of(EventObject::class_info()));
}

TEST(CoreClassInfo, ObjectsTellTheirOwnClass) {
    StandaloneApp app;
    const CoreBaseType& base = app;
    EXPECT_EQ(&base.get_class_info(), &StandaloneApp::class_info());
}

template <class Described>
CoreString name_of(const Described& object) {
    const CoreBaseType& base = object;
    return base.get_class_info().get_name();
}

TEST(CoreClassInfo, ObjectsOfEveryHostClassTellItsName) {
    EXPECT_EQ(name_of(CoreBaseType()), "CoreBaseType");
    EXPECT_EQ(name_of(CoreBaseObject()), "CoreBaseObject");
    EXPECT_EQ(name_of(CoreCustomData()), "CoreCustomData");
    EXPECT_EQ(name_of(EventObject()), "EventObject");
    EXPECT_EQ(name_of(OfObject()), "OfObject");
    EXPECT_EQ(OfObject::class_info().get_base(), &CoreCustomData::class_info());
}

TEST(CoreClassInfo, AnEnumerationTellsItsClass) {
    StandaloneApp app;
    const CoreBaseType& list = *app.get_object_factory().add_enum("list", 0);
    EXPECT_EQ(list.get_class_info().get_name(), "OfEnum");
    EXPECT_TRUE(list.get_class_info().is_kind_of(OfEnum::class_info()));
}

bool destroy_nothing(void*, const bool&) {
    return true;
}

TEST(CoreClassInfo, TheFirstRegistrationOfANameStays) {
    int data = 0;
    const CoreClassInfo& first =
        CoreClassInfo::new_class("TestPainting", destroy_nothing, CoreBaseType::class_info(), &data);
    const CoreClassInfo& second = CoreClassInfo::new_class("TestPainting", nullptr);
    EXPECT_EQ(&first, &second);
    EXPECT_EQ(first.get_destructor(), &destroy_nothing);
    EXPECT_EQ(first.get_user_data(), &data);
    EXPECT_EQ(CoreClassInfo::find("TestPainting"), &first);
    EXPECT_EQ(CoreClassInfo::find("TestSculpture"), nullptr);
}

// Registers classes that other threads register too, and looks each up; counts what is not found.
unsigned int count_lost_classes() {
    unsigned int lost = 0;
    for (unsigned int i = 0; i < 5000; ++i) {
        const CoreString name = CoreString("TestThread") + CoreString::from_unsigned(i);
        const CoreClassInfo& info = CoreClassInfo::new_class(name.get_data(), destroy_nothing);
        lost += CoreClassInfo::find(name) != &info || info.get_name() != name;
    }
    return lost;
}

TEST(CoreClassInfo, SeveralThreadsMayRegisterAndFindClassesAtOnce) {
    unsigned int lost[4] = {};
    std::vector<std::thread> threads;
    for (unsigned int& count : lost)
        threads.emplace_back([&count] { count = count_lost_classes(); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(lost[0] + lost[1] + lost[2] + lost[3], 0u);
}

class Counted : public EventObject {
public:
    Counted() { ++alive; }
    ~Counted() override { --alive; }
    static int alive;
};
int Counted::alive = 0;

TEST(CoreClassInfo, DestructorsTakeObjectsArraysAndNull) {
    const CoreClassInfo::ClassDestructor destroy = EventObject::class_info().get_destructor();
    EXPECT_TRUE(destroy(nullptr, false));
    EXPECT_TRUE(destroy(nullptr, true));
    EXPECT_TRUE(destroy(static_cast<EventObject*>(new Counted), false));
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_TRUE(destroy(new EventObject[3], true));
}

} // namespace
