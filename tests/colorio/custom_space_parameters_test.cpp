#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "tests/colorio/custom_space_fixture.h"

namespace {

using testing::ElementsAre;

/// Bit depth and allocation of the color spaces that records become.
class CustomSpaceParameters : public CustomSpaces {
protected:
    static SpaceDef with_parameters(SpaceDef record, ocio::Allocation allocation) {
        record.bit_depth = static_cast<unsigned int>(OCIO_NAMESPACE::BIT_DEPTH_UINT10);
        record.allocation = static_cast<unsigned int>(allocation);
        record.allocation_vars[0] = -2;
        record.allocation_vars[1] = 5;
        record.allocation_vars[2] = 0.25f;
        return record;
    }
    ocio::ConstColorSpaceRcPtr make(const SpaceDef& record) {
        edit({record});
        ocio::ConstColorSpaceRcPtr space =
            ocio::get_color_space(manager().get_config(), record.name.get_data());
        EXPECT_TRUE(space);
        return space;
    }
    static std::vector<float> allocation_vars(const ocio::ConstColorSpaceRcPtr& space) {
        std::vector<float> variables(static_cast<size_t>(ocio::get_allocation_num_vars(space)));
        ocio::get_allocation_vars(space, variables.data());
        return variables;
    }

    std::string lut = write_lut("two.spi1d", 2);
    std::string grade = write_file("grade.cc", correction_text("x", "2"));
};

TEST_F(CustomSpaceParameters, OfALutAreTheRecordsOwn) {
    const auto space = make(with_parameters(space_record("mine", lut), ocio::ALLOCATION_LG2));
    EXPECT_EQ(ocio::get_bit_depth(space), OCIO_NAMESPACE::BIT_DEPTH_UINT10);
    EXPECT_EQ(ocio::get_allocation(space), ocio::ALLOCATION_LG2);
    EXPECT_THAT(allocation_vars(space), ElementsAre(-2, 5, 0.25f));
}

TEST_F(CustomSpaceParameters, OfUniformAllocationAreTwo) {
    for (const SpaceDef& record : {space_record("lut", lut), space_record("both", lut, grade)}) {
        const auto space = make(with_parameters(record, ocio::ALLOCATION_UNIFORM));
        EXPECT_EQ(ocio::get_allocation(space), ocio::ALLOCATION_UNIFORM);
        EXPECT_THAT(allocation_vars(space), ElementsAre(-2, 5)) << str(record.name);
    }
}

TEST_F(CustomSpaceParameters, OfALutAndACdlAreTheRecordsOwn) {
    const auto space = make(with_parameters(space_record("mine", lut, grade), ocio::ALLOCATION_LG2));
    EXPECT_EQ(ocio::get_bit_depth(space), OCIO_NAMESPACE::BIT_DEPTH_UINT10);
    EXPECT_EQ(ocio::get_allocation(space), ocio::ALLOCATION_LG2);
    EXPECT_THAT(allocation_vars(space), ElementsAre(-2, 5, 0.25f));
}

TEST_F(CustomSpaceParameters, OfACdlAloneAreThoseOfSceneLinearWhateverTheRecordHolds) {
    for (const ocio::Allocation allocation : {ocio::ALLOCATION_UNIFORM, ocio::ALLOCATION_LG2}) {
        const auto space = make(with_parameters(space_record("mine", "", grade), allocation));
        EXPECT_EQ(ocio::get_bit_depth(space), ocio::BIT_DEPTH_F32);
        EXPECT_EQ(ocio::get_allocation(space), ocio::ALLOCATION_LG2);
        EXPECT_THAT(allocation_vars(space), ElementsAre(-15, 6, 0));
    }
}

} // namespace
