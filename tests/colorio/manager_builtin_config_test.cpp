#include "colorio/color_io_manager.h"
#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "tests/colorio/manager_fixture.h"

// What the active built-in configuration holds, seen through OpenColorIO.

using ManagerBuiltinConfig = ManagerTest;

TEST_F(ManagerBuiltinConfig, SpacesCarryFamilyDescriptionDepthAndAllocation) {
    const ocio::ConstConfigRcPtr config = start_manager().get_config();
    const struct {
        const char* name;
        const char* description;
        ocio::Allocation allocation;
        float from, to;
    } expectations[] = {{"sRGB", "Standard RGB Display Space.", ocio::ALLOCATION_UNIFORM, -0.125f, 1.125f},
                        {"Cineon", "Cineon (Log Film Scan).", ocio::ALLOCATION_UNIFORM, -0.125f, 1.125f},
                        {"linear", "Scene-linear, high dynamic range. Used for rendering and compositing.",
                         ocio::ALLOCATION_LG2, -15.0f, 6.0f}};
    for (const auto& expected : expectations) {
        const ocio::ConstColorSpaceRcPtr space = ocio::get_color_space(config, expected.name);
        ASSERT_TRUE(space) << expected.name;
        EXPECT_STREQ(ocio::get_family(space), "Tavelion");
        EXPECT_STREQ(ocio::get_description(space), expected.description);
        EXPECT_EQ(ocio::get_bit_depth(space), ocio::BIT_DEPTH_F32);
        EXPECT_EQ(ocio::get_allocation(space), expected.allocation);
        ASSERT_EQ(ocio::get_allocation_num_vars(space), 2);
        float variables[2];
        ocio::get_allocation_vars(space, variables);
        EXPECT_EQ(variables[0], expected.from);
        EXPECT_EQ(variables[1], expected.to);
    }
}

TEST_F(ManagerBuiltinConfig, OnlyTheDisplaySpacesHaveATransformAndOnlyToTheReference) {
    const ocio::ConstConfigRcPtr config = start_manager().get_config();
    for (const char* name : {"sRGB", "Cineon"}) {
        const ocio::ConstColorSpaceRcPtr space = ocio::get_color_space(config, name);
        EXPECT_TRUE(ocio::get_transform(space, ocio::COLORSPACE_DIR_TO_REFERENCE)) << name;
        EXPECT_FALSE(ocio::get_transform(space, ocio::COLORSPACE_DIR_FROM_REFERENCE)) << name;
    }
    const ocio::ConstColorSpaceRcPtr linear = ocio::get_color_space(config, "linear");
    EXPECT_FALSE(ocio::get_transform(linear, ocio::COLORSPACE_DIR_TO_REFERENCE));
    EXPECT_FALSE(ocio::get_transform(linear, ocio::COLORSPACE_DIR_FROM_REFERENCE));
}

TEST_F(ManagerBuiltinConfig, ItWorksInTheLutFolderAndHasNoRoles) {
    const ocio::ConstConfigRcPtr config = start_manager().get_config();
    EXPECT_EQ(ocio::get_working_dir(config), folder.get_path());
    for (const char* role : {"color_picking", "color_timing", "compositing_log", "data", "default",
                             "matte_paint", "reference", "texture_paint", "scene_linear"})
        EXPECT_EQ(ocio::get_role_color_space(config, role), "") << role;
}
