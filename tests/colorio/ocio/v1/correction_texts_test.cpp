#include "colorio/ocio/v1/correction_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"

namespace {

using ocio::split_corrections;
using test_configs::refusal_of;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string refusal(const std::string& xml) {
    return refusal_of([&] { split_corrections(xml); });
}

TEST(CorrectionTexts, ASingleCorrectionIsTheWholeElement) {
    EXPECT_THAT(split_corrections("\xEF\xBB\xBF<?xml version='1.0'?>\n<!-- > --><ColorCorrection id='a>b'>"
                                  "<x/></ColorCorrection>\n<!-- end -->"),
                ElementsAre("<ColorCorrection id='a>b'><x/></ColorCorrection>"));
    EXPECT_THAT(split_corrections("<ColorCorrection/>"), ElementsAre("<ColorCorrection/>"));
}

TEST(CorrectionTexts, CollectionsAndDecisionListsHoldSeveral) {
    EXPECT_THAT(split_corrections("<ColorCorrectionCollection><Description>two</Description>"
                                  "<ColorCorrection id='a'>1</ColorCorrection>"
                                  "<ColorCorrection id='b'/></ColorCorrectionCollection>"),
                ElementsAre("<ColorCorrection id='a'>1</ColorCorrection>", "<ColorCorrection id='b'/>"));
    EXPECT_THAT(split_corrections("<ColorDecisionList><ColorDecision><ColorCorrection>1</ColorCorrection>"
                                  "</ColorDecision><ColorDecision><ColorCorrection>2</ColorCorrection>"
                                  "</ColorDecision></ColorDecisionList>"),
                ElementsAre("<ColorCorrection>1</ColorCorrection>", "<ColorCorrection>2</ColorCorrection>"));
    EXPECT_THAT(split_corrections("<ColorCorrectionCollection/>"), IsEmpty());
}

TEST(CorrectionTexts, TheSaturationIsSpelledAsTheLibraryReadsIt) {
    EXPECT_THAT(
        split_corrections("<ColorCorrection><SATNode >1</SATNode\n><SATNode/><SATNodes/></ColorCorrection>"),
        ElementsAre("<ColorCorrection><SatNode >1</SatNode\n><SatNode/><SATNodes/></ColorCorrection>"));
}

TEST(CorrectionTexts, WhatIsNoTagStaysAsItIs) {
    const std::string text = "<ColorCorrection><!-- <SATNode> </x> --><![CDATA[<SATNode>]]><?pi <SATNode>?>"
                             "SATNode</ColorCorrection>";
    EXPECT_THAT(split_corrections(text), ElementsAre(text));
}

TEST(CorrectionTexts, ADocumentTypeIsSkipped) {
    EXPECT_THAT(split_corrections("<!DOCTYPE a [<!ENTITY b \"<ColorCorrection>\">]><ColorCorrection/>"),
                ElementsAre("<ColorCorrection/>"));
    EXPECT_THAT(split_corrections("<!DOCTYPE a><ColorCorrection/>"), ElementsAre("<ColorCorrection/>"));
}

TEST(CorrectionTexts, OtherTextsAreRefused) {
    EXPECT_EQ(refusal(""), "it contains no XML element");
    EXPECT_EQ(refusal("no XML"), "it contains no XML element");
    EXPECT_EQ(refusal("<html></html>"), "its outermost element, 'html', is not a color correction element");
    EXPECT_EQ(refusal("<ColorCorrection/><ColorCorrection/>"), "it has more than one outermost element");
}

TEST(CorrectionTexts, DamagedTextsAreRefused) {
    EXPECT_EQ(refusal("<ColorCorrection"), "a tag does not end");
    EXPECT_EQ(refusal("<ColorCorrection id='>"), "a tag does not end");
    EXPECT_EQ(refusal("<ColorCorrection>"), "the element 'ColorCorrection' does not end");
    EXPECT_EQ(refusal("<ColorCorrection><a></ColorCorrection>"),
              "the element 'ColorCorrection' ends but was not open");
    EXPECT_EQ(refusal("</a>"), "the element 'a' ends but was not open");
    EXPECT_EQ(refusal("<!-- <ColorCorrection/>"), "'<!--' does not end");
    EXPECT_EQ(refusal("<"), "a tag does not end");
    EXPECT_NE(refusal("<>"), "nothing thrown");
    EXPECT_NE(refusal("</>"), "nothing thrown");
}

TEST(CorrectionTexts, DeepNestingIsRefused) {
    std::string deep = "<ColorCorrection>";
    for (int i = 0; i < 100; ++i)
        deep += "<a>";
    EXPECT_EQ(refusal(deep), "its elements are nested too deeply");
}

} // namespace
