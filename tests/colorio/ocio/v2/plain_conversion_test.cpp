#include "colorio/ocio/v2/plain_conversion.h"

#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"

namespace {

namespace library = ocio::library;

library::ConstTransformRcPtr doubling() {
    const library::MatrixTransformRcPtr matrix = library::MatrixTransform::Create();
    const double m[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    matrix->setMatrix(m);
    return matrix;
}

library::TransformRcPtr group_of(const std::vector<library::ConstTransformRcPtr>& members) {
    const library::GroupTransformRcPtr group = library::GroupTransform::Create();
    for (const auto& member : members)
        group->appendTransform(member->createEditableCopy());
    return group;
}

/// From and to a space that is the reference space.
bool is_plain(const library::ConstTransformRcPtr& transform) {
    const auto space = test_configs::make_space("x", transform), reference = test_configs::make_space("lin");
    const bool from = ocio::is_plain_conversion(*space, *reference);
    EXPECT_EQ(ocio::is_plain_conversion(*reference, *space), from);
    return from;
}

TEST(PlainConversions, ConsistOfOperationsThatCarryAllTheyNeed) {
    EXPECT_TRUE(is_plain(nullptr));
    EXPECT_TRUE(is_plain(doubling()));
    EXPECT_TRUE(is_plain(library::CDLTransform::Create()));
    EXPECT_TRUE(is_plain(library::Lut1DTransform::Create()));
    EXPECT_TRUE(is_plain(group_of({doubling(), library::LogTransform::Create()})));
}

TEST(PlainConversions, ReferToNothingElse) {
    const auto file = library::FileTransform::Create();
    const auto view = library::DisplayViewTransform::Create();
    for (const library::ConstTransformRcPtr& referring : std::initializer_list<library::ConstTransformRcPtr>{
             file, library::ColorSpaceTransform::Create(), library::LookTransform::Create(), view}) {
        EXPECT_FALSE(is_plain(referring));
        EXPECT_FALSE(is_plain(group_of({doubling(), referring})));
    }
}

TEST(PlainConversions, HaveNoDeepAndNoLongGroups) {
    EXPECT_FALSE(is_plain(group_of({group_of({doubling()})})));
    EXPECT_FALSE(is_plain(group_of(std::vector<library::ConstTransformRcPtr>(1000, doubling()))));
}

TEST(PlainConversions, DoNotCrossFromTheSceneToADisplay) {
    const auto scene = library::ColorSpace::Create(library::REFERENCE_SPACE_SCENE);
    const auto display = library::ColorSpace::Create(library::REFERENCE_SPACE_DISPLAY);
    EXPECT_FALSE(ocio::is_plain_conversion(*scene, *display));
    EXPECT_TRUE(ocio::is_plain_conversion(*display, *display));
}

} // namespace
