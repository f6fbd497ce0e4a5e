#include "colorio/ocio/cdl_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A correction with a slope and otherwise the numbers that change nothing.
ocio::CdlNumbers make_numbers(const char* id, double slope) {
    return {id, {slope, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1};
}

std::vector<float> get_slope(const ocio::CDLTransformRcPtr& transform) {
    std::vector<float> slope(3);
    ocio::get_slope(transform, slope.data());
    return slope;
}

TEST(CdlDocument, HoldsTheDigitsOfOneCorrection) {
    const std::string document = ocio::write_cdl_document({make_numbers("a", 1.2345678)}, false);
    EXPECT_THAT(document, HasSubstr("<Slope>1.2345678 1 1</Slope>"));
    EXPECT_THAT(document, HasSubstr("<ColorCorrection "));
    EXPECT_THAT(document, HasSubstr(" id=\"a\""));
}

TEST(CdlDocument, OfACollectionReadsBack) {
    const TempDir folder;
    const std::string path = folder.write(
        "all.ccc",
        ocio::write_cdl_document({make_numbers("a<&\"", 1e-5), make_numbers("b", 0.33333334)}, true));
    const std::vector<ocio::CDLTransformRcPtr> read = ocio::create_CDL_transforms_from_file(path.c_str());
    ASSERT_EQ(read.size(), 2u);
    EXPECT_STREQ(ocio::get_id(read[0]), "a<&\"");
    EXPECT_THAT(get_slope(read[0]), ElementsAre(1e-5f, 1.0f, 1.0f));
    EXPECT_THAT(get_slope(read[1]), ElementsAre(0.33333334f, 1.0f, 1.0f));
}

TEST(CdlDocument, NamesNoIdWhereThereIsNone) {
    EXPECT_THAT(ocio::write_cdl_document({make_numbers("", 2)}, false), testing::Not(HasSubstr("id=")));
}

TEST(CdlDocument, OfOneCorrectionTakesNoOtherCount) {
    for (const std::vector<ocio::CdlNumbers>& corrections :
         {std::vector<ocio::CdlNumbers>{}, {make_numbers("a", 1.0), make_numbers("b", 2.0)}})
        EXPECT_THAT(test_configs::refusal_of([&] { ocio::write_cdl_document(corrections, false); }),
                    HasSubstr("single CDL"));
}

} // namespace
