#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using test_configs::make_space;
using test_configs::refusal_of;
using testing::HasSubstr;
using testing::StartsWith;

namespace library = ocio::library;

const std::string ACCEPTED = "nothing thrown";
const std::string CYCLE = "the configuration forms a cycle: ";

ocio::TransformRcPtr shift() {
    const auto transform = library::MatrixTransform::Create();
    const double offset[] = {0.1, 0.1, 0.1, 0.0};
    transform->setOffset(offset);
    return transform;
}

ocio::TransformRcPtr conversion(const std::string& source, const std::string& destination) {
    const auto transform = library::ColorSpaceTransform::Create();
    transform->setSrc(source.c_str());
    transform->setDst(destination.c_str());
    return transform;
}

ocio::TransformRcPtr looks(const char* list) {
    const auto transform = library::LookTransform::Create();
    transform->setSrc("raw");
    transform->setDst("raw");
    transform->setLooks(list);
    return transform;
}

ocio::TransformRcPtr view(const char* name) {
    const auto transform = library::DisplayViewTransform::Create();
    transform->setSrc("raw");
    transform->setDisplay("d");
    transform->setView(name);
    return transform;
}

ocio::TransformRcPtr group(std::initializer_list<ocio::TransformRcPtr> members) {
    const auto transform = ocio::create_group_transform();
    for (const auto& member : members)
        ocio::push_back(transform, member);
    return transform;
}

/// A version 2 configuration with the reference space "raw", filled in by the tests.
class ConversionCheck : public testing::Test {
protected:
    ConversionCheck() : config_(library::Config::Create()) { space("raw", nullptr); }

    void space(const char* name, const ocio::ConstTransformRcPtr& to_reference,
               const ocio::ConstTransformRcPtr& from_reference = nullptr) {
        const auto made = make_space(name, to_reference);
        if (from_reference)
            made->setTransform(from_reference, ocio::COLORSPACE_DIR_FROM_REFERENCE);
        ocio::add_color_space(config_, made);
    }

    void look(const char* name, const char* process_space, const ocio::ConstTransformRcPtr& transform,
              const ocio::ConstTransformRcPtr& inverse = nullptr) {
        const auto made = library::Look::Create();
        made->setName(name);
        made->setProcessSpace(process_space);
        made->setTransform(transform);
        if (inverse)
            made->setInverseTransform(inverse);
        config_->addLook(made);
    }

    void named_transform(const char* name, const ocio::ConstTransformRcPtr& transform) {
        const auto made = library::NamedTransform::Create();
        made->setName(name);
        made->setTransform(transform, ocio::TRANSFORM_DIR_FORWARD);
        config_->addNamedTransform(made);
    }

    std::string refusal(const char* source, const char* destination) {
        return refusal_of([&] { ocio::get_processor(config_, source, destination); });
    }

    /// "s0" -> "s1" -> ... -> the last of `count` spaces, which shifts.
    void chain(int count) {
        for (int i = 0; i + 1 < count; ++i)
            space(("s" + std::to_string(i)).c_str(), conversion("s" + std::to_string(i + 1), "raw"));
        space(("s" + std::to_string(count - 1)).c_str(), shift());
    }

    ocio::ConfigRcPtr config_;
};

TEST_F(ConversionCheck, ASpaceThatRefersToItselfIsACycle) {
    space("a", conversion("a", "raw"));
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> a");
    EXPECT_EQ(refusal("raw", "a"), CYCLE + "a -> a");
}

TEST_F(ConversionCheck, TheMessageNamesEveryMemberAndNobodyElse) {
    space("start", conversion("a", "raw"));
    space("a", conversion("b", "raw"));
    space("b", group({shift(), conversion("raw", "c")}));
    space("c", nullptr, conversion("a", "raw"));
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

TEST_F(ConversionCheck, AnAliasIsNoDisguise) {
    const auto made = make_space("a", conversion("other_name", "raw"));
    made->addAlias("other_name");
    ocio::add_color_space(config_, made);
    EXPECT_EQ(refusal("other_name", "raw"), CYCLE + "a -> a");
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

TEST_F(ConversionCheck, AnInverseLookTransformIsFollowedForwardsToo) {
    // The library looks for context variables that way.
    look("l", "raw", conversion("a", "raw"), shift());
    const auto transform = looks("l");
    transform->setDirection(ocio::TRANSFORM_DIR_INVERSE);
    space("a", transform, shift());
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "a -> l -> a");
}

TEST_F(ConversionCheck, ANamedTransformThatUsesItselfIsACycle) {
    named_transform("n", conversion("n", "raw"));
    EXPECT_EQ(refusal("n", "raw"), CYCLE + "n -> n");
}

TEST_F(ConversionCheck, TheSpaceOfAViewIsFollowed) {
    space("a", nullptr, view("v"));
    ocio::add_display(config_, "d", "v", "a", "");
    EXPECT_EQ(refusal("raw", "a"), CYCLE + "a -> a");
    EXPECT_EQ(refusal_of([&] {
                  ocio::get_processor(config_, ocio::DisplayTransform{"raw", "d", "v"});
              }),
              CYCLE + "a -> a");
}

TEST_F(ConversionCheck, TheLooksOfAViewAreFollowed) {
    space("a", shift());
    look("l", "raw", view("v"));
    ocio::add_display(config_, "d", "v", "a", "l");
    EXPECT_EQ(refusal_of([&] {
                  ocio::get_processor(config_, ocio::DisplayTransform{"raw", "d", "v"});
              }),
              CYCLE + "l -> l");
}

TEST_F(ConversionCheck, TheViewTransformIsFollowed) {
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
