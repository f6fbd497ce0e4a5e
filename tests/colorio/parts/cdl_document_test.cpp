#include "colorio/cdl/cdl_document.h"

#include <gtest/gtest.h>

#include "colorio/color_io_manager.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

namespace {

XmlNode parse(const char* text) {
    return get_document_element(XmlNode::parse_string(text));
}

TEST(CdlDocument, StartsBelowDeclarationAndComment) {
    EXPECT_STREQ(parse("<?xml version=\"1.0\"?><!-- note --><ColorCorrection/>").get_name(),
                 "ColorCorrection");
    EXPECT_STREQ(parse("<ColorCorrection/>").get_name(), "ColorCorrection");
}

TEST(CdlDocument, IdentityChangesNothing) {
    const ColorIOManager::ColorDecisionListDef def = make_identity_CDL();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(def.slope[i], 1);
        EXPECT_EQ(def.offset[i], 0);
        EXPECT_EQ(def.power[i], 1);
    }
    EXPECT_EQ(def.saturation, 1);
    EXPECT_FALSE(def.is_builtin);
}

TEST(CdlDocument, ACorrectionIsValidOnlyWithAllItsNumbers) {
    const std::string sop =
        "<SOPNode><Slope>1 2 3</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>";
    const auto valid = [](const std::string& inner) {
        return is_valid_correction(
            parse(("<ColorCorrection id=\"a\">" + inner + "</ColorCorrection>").c_str()));
    };
    const std::string sat = "<SatNode><Saturation>1</Saturation></SatNode>";
    EXPECT_TRUE(valid(sop + sat));
    EXPECT_FALSE(valid(sat));
    EXPECT_FALSE(
        valid("<SOPNode><Slope>1 2</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>" + sat));
    EXPECT_FALSE(
        valid("<SOPNode><Slope>-1 2 3</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>" + sat));
    EXPECT_FALSE(
        valid("<SOPNode><Slope>1 2 3</Slope><Offset>0 0 0</Offset><Power>0 1 1</Power></SOPNode>" + sat));
}

TEST(CdlDocument, TheIdIsThatOfTheFirstAttributeOfThatName) {
    EXPECT_EQ(get_correction_id(parse("<ColorCorrection name=\"n\" id=\"a\"/>")), "a");
    EXPECT_EQ(get_correction_id(parse("<ColorCorrection/>")), "");
}

} // namespace
