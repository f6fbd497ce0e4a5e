#include "colorio/color_io.h"

#include <string>
#include <utility>
#include <vector>

#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "host/core/core_class_info.h"
#include "host/event/event_ids.h"
#include "standalone/standalone_app.h"
#include "tests/colorio/running_module.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

std::vector<std::string> tags(const ColorIO& facade) {
    std::vector<std::string> result;
    for (unsigned int i = 0; i < facade.get_color_space_tag_count(); ++i)
        result.push_back(str(facade.get_color_space_tag(i)));
    return result;
}

/// A facade that records its destruction.
struct MortalColorIO : ColorIO {
    MortalColorIO(const ColorIO& other, unsigned int& deaths) : ColorIO(other), deaths(deaths) {}
    ~MortalColorIO() override { ++deaths; }
    unsigned int& deaths;
};

using ColorIOFacade = ManagerTest;

} // namespace

TEST_F(ColorIOFacade, IsMadeOnFirstUseAndStaysTheSame) {
    EXPECT_EQ(ColorIO::s_singleton, nullptr);
    ColorIO* facade = ColorIO::get_instance();
    ASSERT_NE(facade, nullptr);
    EXPECT_EQ(ColorIO::get_instance(), facade);
    EXPECT_EQ(ColorIO::s_singleton, facade);
}

TEST_F(ColorIOFacade, KnowsThreeTagsOfColorSpaceAttributes) {
    EXPECT_THAT(tags(*ColorIO::get_instance()), ElementsAre("ColorSpace", "colorspace", "color_space"));
}

TEST_F(ColorIOFacade, IsRegisteredBelowTheHostsEventObject) {
    const CoreClassInfo* info = &ColorIO::class_info();
    std::vector<std::string> chain;
    for (; info != nullptr; info = info->get_base())
        chain.push_back(str(info->get_name()));
    EXPECT_THAT(chain,
                ElementsAre("ColorIO", "EventObject", "CoreCustomData", "CoreBaseObject", "CoreBaseType"));
    EXPECT_EQ(ColorIO::class_info().get_base(), &EventObject::class_info());
    EXPECT_EQ(ColorIO::class_info().get_destructor(), &ColorIO::___class_destructor__);
    EXPECT_EQ(ColorIO::class_info().get_user_data(), nullptr);
}

TEST_F(ColorIOFacade, IsRegisteredOnceUnderItsName) {
    EXPECT_EQ(&ColorIO::class_info(), &ColorIO::class_info());
    EXPECT_EQ(CoreClassInfo::find("ColorIO"), &ColorIO::class_info());
}

TEST_F(ColorIOFacade, TellsItsClassThroughItsBase) {
    const CoreBaseType& object = *ColorIO::get_instance();
    EXPECT_EQ(&object.get_class_info(), &ColorIO::class_info());
}

TEST_F(ColorIOFacade, ClassDestructorAcceptsNull) {
    EXPECT_TRUE(ColorIO::___class_destructor__(nullptr, false));
    EXPECT_TRUE(ColorIO::___class_destructor__(nullptr, true));
}

TEST_F(ColorIOFacade, ClassDestructorEndsASingleObject) {
    unsigned int deaths = 0;
    ColorIO* object = new MortalColorIO(*ColorIO::get_instance(), deaths);
    EXPECT_TRUE(ColorIO::___class_destructor__(object, false));
    EXPECT_EQ(deaths, 1u);
}

// That both objects are freed is what the leak check of the sanitizers looks at.
TEST_F(ColorIOFacade, ClassDestructorEndsAnArray) {
    const ColorIO& facade = *ColorIO::get_instance();
    auto* array = new ColorIO[2]{facade, facade};
    EXPECT_THAT(tags(array[1]), SizeIs(3));
    EXPECT_TRUE(ColorIO::___class_destructor__(array, true));
}

TEST_F(ColorIOFacade, CopiesCarryTheTags) {
    const ColorIO& facade = *ColorIO::get_instance();
    const ColorIO copy(facade);
    ColorIO assigned(copy);
    assigned = facade;
    EXPECT_THAT(tags(copy), ElementsAre("ColorSpace", "colorspace", "color_space"));
    EXPECT_THAT(tags(assigned), ElementsAre("ColorSpace", "colorspace", "color_space"));
    EXPECT_THAT(tags(facade), SizeIs(3));
    EXPECT_NE(&copy.get_color_space_tag(0), &facade.get_color_space_tag(0));
}

TEST_F(ColorIOFacade, MovesCarryTheTagsAndAssigningReleasesThemInTheSource) {
    ColorIO source(*ColorIO::get_instance());
    ColorIO constructed(std::move(source));
    EXPECT_THAT(tags(constructed), ElementsAre("ColorSpace", "colorspace", "color_space"));

    ColorIO assigned(*ColorIO::get_instance());
    assigned = std::move(constructed);
    EXPECT_THAT(tags(assigned), ElementsAre("ColorSpace", "colorspace", "color_space"));
    EXPECT_EQ(constructed.get_color_space_tag_count(), 0u);
}

TEST_F(ColorIOFacade, AnAssignmentToItselfKeepsTheTags) {
    ColorIO copy(*ColorIO::get_instance());
    const ColorIO& same = copy;
    copy = same;
    EXPECT_THAT(tags(copy), ElementsAre("ColorSpace", "colorspace", "color_space"));
}

TEST_F(ColorIOFacade, ACopyRaisesItsEventsToNobody) {
    ASSERT_TRUE(ColorIO::init(&app));
    EventRecorder events;
    ColorIO copy(*ColorIO::get_instance());
    app.default_color_space_name = "Cineon";
    copy.raise_event(EVT_ID_ROLE_SCENE_LINEAR_CHANGED);
    EXPECT_THAT(events.take(), IsEmpty());
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "linear");
}
