#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "tests/colorio/ocio/conversion_check_fixture.h"

namespace {

using namespace conversion_check;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(ConversionCheck, ASpaceThatRefersToItselfIsACycle) {
    space("a", conversion("a", "raw"));
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> a");
    EXPECT_EQ(refusal("raw", "a"), CYCLE + "a -> a");
}

TEST_F(ConversionCheck, TheMessageNamesEveryMemberAndNobodyElse) {
    space("start", conversion("a", "raw"));
    space("a", conversion("b", "raw"));
    space("b", group({shift(), conversion("raw", "c")}));
    space("c", {}, conversion("a", "raw"));
    EXPECT_EQ(refusal("start", "raw"), CYCLE + "a -> b -> c -> a");
}

TEST_F(ConversionCheck, OtherConversionsAreUnharmedByACycle) {
    space("a", conversion("b", "raw"));
    space("b", conversion("a", "raw"));
    space("fine", shift());
    EXPECT_EQ(refusal("fine", "raw"), ACCEPTED);
    EXPECT_EQ(refusal("a", "fine"), CYCLE + "a -> b -> a");
}

TEST_F(ConversionCheck, BothTransformsOfASpaceAreFollowed) {
    // The library looks into both, whichever it needs.
    space("a", shift(), conversion("raw", "a"));
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> a");
}

TEST_F(ConversionCheck, ARoleIsNoDisguise) {
    space("a", conversion("default", "raw"));
    config_->setRole("default", "a");
    EXPECT_EQ(refusal("default", "raw"), CYCLE + "a -> a");
}

TEST_F(ConversionCheck, AVariableIsNoDisguise) {
    config_->addEnvironmentVar("QB_TEST_SPACE", "a");
    space("a", conversion("$QB_TEST_SPACE", "raw"));
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> a");
}

TEST_F(ConversionCheck, ALookThatUsesItselfIsACycle) {
    space("a", looks("l"));
    look("l", "raw", looks("l"));
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "l -> l");
}

TEST_F(ConversionCheck, TheProcessSpaceOfALookIsFollowed) {
    space("a", looks("l"));
    look("l", "a", shift());
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> l -> a");
}

TEST_F(ConversionCheck, EveryAlternativeOfALookListIsFollowed) {
    space("a", looks("fine | l"));
    look("fine", "raw", shift());
    look("l", "a", shift());
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> l -> a");
}

TEST_F(ConversionCheck, OnlyTheDirectionOfALookThatIsUsedCounts) {
    look("l", "raw", shift(), conversion("a", "raw"));
    space("a", looks("l"), shift());
    EXPECT_EQ(refusal("a", "raw"), ACCEPTED);
}

TEST_F(ConversionCheck, ALoneTransformIsAlsoFollowedBackwards) {
    look("l", "raw", shift(), conversion("a", "raw"));
    space("a", looks("l"));
    EXPECT_EQ(refusal("raw", "a"), CYCLE + "a -> l -> a");
}

TEST_F(ConversionCheck, TheSpaceOfAViewIsFollowed) {
    space("a", {}, test_configs::make_view_transform("raw", "d", "v"));
    ocio::add_display(config_, "d", "v", "a", "");
    EXPECT_EQ(refusal("raw", "a"), CYCLE + "a -> a");
    EXPECT_EQ(refusal_of_view(), CYCLE + "a -> a");
}

TEST_F(ConversionCheck, TheLooksOfAViewAreFollowed) {
    space("a", shift());
    look("l", "raw", test_configs::make_view_transform("raw", "d", "v"));
    ocio::add_display(config_, "d", "v", "a", "l");
    EXPECT_EQ(refusal_of_view(), CYCLE + "l -> l");
}

TEST_F(ConversionCheck, AShortChainIsFollowedToItsEnd) {
    chain(100);
    std::array<float, 4> pixel{0, 0, 0, 1};
    ocio::get_processor(config_, "s0", "raw")->apply_rgba(pixel.data());
    EXPECT_FLOAT_EQ(pixel[0], 0.1f);
}

TEST_F(ConversionCheck, AChainThatWouldOverflowTheStackIsRefused) {
    chain(2000);
    EXPECT_THAT(refusal("s0", "raw"),
                StartsWith("the conversion nests more than 256 transforms: s0 -> s1 -> s2"));
    EXPECT_EQ(refusal("s1900", "raw"), ACCEPTED);
}

TEST_F(ConversionCheck, KnownPartsOfAChainCountToo) {
    chain(400);
    space("a", group({conversion("s200", "raw"), conversion("s0", "raw")}));
    EXPECT_THAT(refusal("a", "raw"), HasSubstr("nests more than 256 transforms"));
}

TEST_F(ConversionCheck, GroupsThatWouldOverflowTheStackAreRefused) {
    ocio::TransformRcPtr nested = shift();
    for (int i = 0; i < 2000; ++i)
        nested = group({nested});
    space("a", nested);
    EXPECT_EQ(refusal("a", "raw"), "the conversion nests more than 256 transforms: a");
}

TEST_F(ConversionCheck, AConversionThatDoublesAtEveryStepIsRefused) {
    for (int i = 0; i < 40; ++i) {
        const std::string next = "s" + std::to_string(i + 1);
        space(("s" + std::to_string(i)).c_str(), group({conversion(next, "raw"), conversion(next, "raw")}));
    }
    space("s40", shift());
    EXPECT_THAT(refusal("s0", "raw"), StartsWith("the conversion takes more than 20000 transforms: "));
    EXPECT_EQ(refusal("s35", "raw"), ACCEPTED);
}

TEST_F(ConversionCheck, AWideConversionIsNone) {
    const auto wide = ocio::create_group_transform();
    for (int i = 0; i < 300; ++i) {
        const std::string name = "part" + std::to_string(i);
        space(name.c_str(), shift());
        ocio::push_back(wide, conversion(name, "raw"));
    }
    space("a", wide);
    EXPECT_EQ(refusal("a", "raw"), ACCEPTED);
}

} // namespace
