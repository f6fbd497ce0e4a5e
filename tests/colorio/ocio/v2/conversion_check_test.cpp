#include <gtest/gtest.h>

#include "tests/colorio/ocio/conversion_check_fixture.h"

namespace {

using namespace conversion_check;

namespace library = ocio::library;

class ConversionCheckOfV2 : public ConversionCheck {
protected:
    void named_transform(const char* name, const ocio::ConstTransformRcPtr& transform) {
        const auto made = library::NamedTransform::Create();
        made->setName(name);
        made->setTransform(transform, ocio::TRANSFORM_DIR_FORWARD);
        config_->addNamedTransform(made);
    }
};

TEST_F(ConversionCheckOfV2, AnAliasIsNoDisguise) {
    const auto made = test_configs::make_space("a", conversion("other_name", "raw"));
    made->addAlias("other_name");
    ocio::add_color_space(config_, made);
    EXPECT_EQ(refusal("other_name", "raw"), CYCLE + "a -> a");
}

TEST_F(ConversionCheckOfV2, AnInverseLookTransformIsFollowedForwardsToo) {
    // The library looks for context variables that way.
    look("l", "raw", conversion("a", "raw"), shift());
    const auto transform = looks("l");
    transform->setDirection(ocio::TRANSFORM_DIR_INVERSE);
    space("a", transform, shift());
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> l -> a");
}

TEST_F(ConversionCheckOfV2, ANamedTransformThatUsesItselfIsACycle) {
    named_transform("n", conversion("n", "raw"));
    EXPECT_EQ(refusal("n", "raw"), CYCLE + "n -> n");
}

TEST_F(ConversionCheckOfV2, TheViewTransformIsFollowed) {
    const auto made = library::ViewTransform::Create(library::REFERENCE_SPACE_SCENE);
    made->setName("vt");
    made->setTransform(conversion("raw", "monitor"), library::VIEWTRANSFORM_DIR_FROM_REFERENCE);
    config_->addViewTransform(made);
    const auto monitor = library::ColorSpace::Create(library::REFERENCE_SPACE_DISPLAY);
    monitor->setName("monitor");
    ocio::add_color_space(config_, monitor);
    // Reaching the display's side takes the default view transform, which is the same.
    EXPECT_EQ(refusal("raw", "monitor"), CYCLE + "vt -> vt");
}

} // namespace
