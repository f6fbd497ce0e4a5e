// Uses that no careful host makes, and files that no careful program writes.

#include <functional>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "host/gmath/gmath_vec4.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

namespace {

using testing::Contains;
using testing::Not;

using CdlDef = ColorIOManager::ColorDecisionListDef;

class AwkwardUse : public ConverterTest {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }

    CdlDef read_document(const std::string& text, bool collection = false) {
        CdlDef def = cdl_record("as it was", {{5, 5, 5}});
        def.saturation = 0.5f;
        manager().read_CDL_from_XML(write_file("document.cc", text).c_str(), def, collection);
        return def;
    }
    /// What the CDL of that name makes of 0.125.
    float grade(const char* name) {
        EXPECT_TRUE(converter->configure_CDL("No CDL", name)) << name;
        return convert(0.125f, 0.125f, 0.125f)[0];
    }
    /// Publishes one record that names a correction of a collection of that text.
    void use_collection(const std::string& corrections) {
        CdlDef record = cdl_record("filed", {});
        record.file = write_file("twice.ccc", collection_text(corrections)).c_str();
        record.cccid = "a";
        use_cdls({record});
    }
};

TEST_F(AwkwardUse, SavingIntoNothingIsRefused) {
    EXPECT_FALSE(manager().save_config(nullptr));
    EXPECT_TRUE(ColorIO::save_config(nullptr)) << "there are a manager and a detector";
}

TEST_F(AwkwardUse, AManagerThatWasNotStartedPublishesNothing) {
    ColorIOManager unstarted(&app);
    unstarted.use_file_config(false);
    unstarted.set_tavelion_config(CoreVector<ColorIOManager::ColorSpaceDef>());
    EXPECT_EQ(unstarted.get_color_space_names().get_count(), 0u);
    EXPECT_EQ(unstarted.get_color_space_index("sRGB"), 0xFFFFFFFFu);
}

TEST_F(AwkwardUse, ACopyAddsALocalCdlAfterItsOriginalIsGone) {
    auto original = std::make_unique<ColorIOManager>(manager());
    CoreVector<CdlDef> list;
    list.append(cdl_record("warm", {{2, 2, 2}}));
    original->set_tavelion_config(list);
    ColorIOManager copy(*original);
    original.reset();
    EXPECT_TRUE(copy.add_local_CDL(cdl_record("warm", {{4, 4, 4}})));
    EXPECT_TRUE(copy.add_local_CDL(cdl_record("input_local_CDL", {{8, 8, 8}})));
}

/// What is left of a converter that outlives its manager, after one more request.
class OrphanedConverter : public AwkwardUse {
protected:
    Flags flags_after(const std::function<bool(ColorIOConverter&)>& request) {
        ColorIO::destroy();
        EXPECT_TRUE(ColorIO::init(&app));
        ColorIOConverter orphan;
        EXPECT_TRUE(orphan.configure("sRGB", "linear"));
        ColorIO::destroy();
        GMathVec4<float> pixel(0.5f, 0.5f, 0.5f, 1.0f);
        EXPECT_TRUE(orphan.convert_pixel(pixel)) << "the conversion that it has goes on";
        EXPECT_FALSE(request(orphan));
        return flags_of(orphan);
    }
};

TEST_F(OrphanedConverter, FailsToBeConfiguredForNamesThatNobodyKnows) {
    EXPECT_EQ(flags_after([](auto& orphan) { return orphan.configure("Cineon", "linear"); }),
              Flags::UNCONFIGURED);
    EXPECT_EQ(
        flags_after([](auto& orphan) { return orphan.configure_for_display("linear", "Tavelion", "sRGB"); }),
        Flags::UNCONFIGURED);
}

TEST_F(OrphanedConverter, PassesWhereNothingIsAskedFor) {
    EXPECT_EQ(flags_after([](auto& orphan) { return orphan.configure("a", "a"); }), Flags::PASSING);
    EXPECT_EQ(flags_after([](auto& orphan) { return orphan.configure_for_display("", "Tavelion", "sRGB"); }),
              Flags::PASSING);
    EXPECT_EQ(flags_after([](auto& orphan) { return orphan.configure_CDL("warm", "cool"); }), Flags::PASSING)
        << "no CDL is known, so both are none";
}

TEST_F(AwkwardUse, ACollectionThatOnlyRepeatsAnIdGivesTheFirstOfThatId) {
    use_collection(correction_text("a", "2") + correction_text("a", "4"));
    EXPECT_EQ(grade("filed"), 0.25f);
}

TEST_F(AwkwardUse, ACollectionThatRepeatsAnIdAndHasAnotherFaultIsRefused) {
    for (const std::string slope : {"-1", "x", "1 1", "inf", "nan"}) {
        take_log();
        use_collection(correction_text("a", "2") + correction_text("a", slope));
        EXPECT_FALSE(converter->configure_CDL("No CDL", "filed")) << slope;
        EXPECT_THAT(take_log(),
                    Not(Contains(error("Node 'Slope' not find in '" + path_of("twice.ccc") + "'.\n"))));
    }
}

TEST_F(AwkwardUse, ACollectionThatRepeatsAnIdIsHeldToTheRangesOfEveryNumber) {
    const auto with = [](const std::string& offset, const std::string& power, const std::string& saturation) {
        return "<ColorCorrection id=\"a\"><SOPNode><Slope>2 2 2</Slope><Offset>0 0 " + offset +
               "</Offset><Power>1 1 " + power + "</Power></SOPNode><SATNode><Saturation>" + saturation +
               "</Saturation></SATNode></ColorCorrection>";
    };
    struct Case {
        std::string second;
        bool is_valid;
    };
    for (const Case& test : {Case{with("-5", "0.001", "0"), true}, Case{with("0", "0", "1"), false},
                             Case{with("0", "-0.0", "1"), false}, Case{with("0", "-1", "1"), false},
                             Case{with("0", "inf", "1"), false}, Case{with("inf", "1", "1"), false},
                             Case{with("nan", "1", "1"), false}, Case{with("0", "1", "-0.5"), false},
                             Case{with("0", "1", "inf"), false}, Case{with("0", "nan", "1"), false}}) {
        use_collection(correction_text("a", "2") + test.second);
        EXPECT_EQ(converter->configure_CDL("No CDL", "filed"), test.is_valid) << test.second;
    }
}

TEST_F(AwkwardUse, ADocumentBehindACommentOrASecondInstructionIsRead) {
    const std::string correction = correction_text("a", "2");
    EXPECT_EQ(read_document("<!-- graded on set -->" + correction).slope[0], 2);
    EXPECT_EQ(read_document("<?xml version=\"1.0\"?><?xml-stylesheet href=\"a\"?>" + correction).slope[0], 2);
    EXPECT_EQ(read_document("<?xml version=\"1.0\"?><!-- graded --><!-- twice -->" + correction).slope[0], 2);
}

TEST_F(AwkwardUse, AnElementWithoutTextLeavesItsNumbers) {
    const CdlDef def =
        read_document("<ColorCorrection><SOPNode><Slope/><Offset>1 1 1</Offset><Power>2 2 2</Power>"
                      "</SOPNode><SATNode><Saturation/></SATNode></ColorCorrection>");
    EXPECT_EQ(def.slope[0], 5);
    EXPECT_EQ(def.offset[0], 1);
    EXPECT_EQ(def.saturation, 0.5f);
    EXPECT_FALSE(def.is_builtin);
}

} // namespace
