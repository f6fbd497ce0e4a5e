#include "colorio/ocio/context_variables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/ocio/conversion_check_fixture.h"
#include "tests/support/env_guard.h"

namespace {

using conversion_check::ACCEPTED;
using test_configs::refusal_of;
using testing::StartsWith;

const std::string CYCLE = "context variables form a cycle: ";
const std::string TOO_FAR = "context variables expand too far: ";

/// A color space that reads the file `source`.
std::string reader_of(const std::string& source) {
    return "  - !<ColorSpace>\n    name: reader\n    to_reference: !<FileTransform> {src: \"" + source +
           "\", interpolation: linear}\n";
}

std::string environment(const std::string& variables) {
    return "environment: {" + variables + "}\n";
}

class ContextVariables : public testing::Test {
protected:
    std::string refusal() {
        return refusal_of([&] { test_configs::load(folder, text.str()); });
    }

    TempDir folder;
    test_configs::ConfigText text;
};

TEST_F(ContextVariables, ThatReferToThemselvesAreRefusedWithTheConfig) {
    for (const char* value : {"${A}x", "$A", "x%A%"}) {
        text.settings = environment(std::string("A: \"") + value + "\"");
        EXPECT_EQ(refusal(), CYCLE + "A -> A") << value;
    }
}

TEST_F(ContextVariables, ThatReferToEachOtherAreRefusedWithTheChainNamed) {
    text.settings = environment("A: $B$B, B: $A$A");
    EXPECT_EQ(refusal(), CYCLE + "A -> B -> A");
    text.settings = environment("START: \"${ONE}\", ONE: \"%TWO%\", TWO: \"x/$THREE\", THREE: \"$ONE\"");
    EXPECT_THAT(refusal(),
                testing::AnyOf(CYCLE + "ONE -> TWO -> THREE -> ONE", CYCLE + "TWO -> THREE -> ONE -> TWO",
                               CYCLE + "THREE -> ONE -> TWO -> THREE"));
}

TEST_F(ContextVariables, ThatDoubleFortyTimesAreRefused) {
    std::string variables;
    for (int i = 10; i < 50; ++i)
        variables += "V" + std::to_string(i) + ": \"${V" + std::to_string(i + 1) + "}${V" +
                     std::to_string(i + 1) + "}\", ";
    text.settings = environment(variables + "V50: x");
    EXPECT_THAT(refusal(), StartsWith(TOO_FAR));
    EXPECT_THAT(refusal(), testing::HasSubstr("-> ..."));
}

TEST_F(ContextVariables, ThatMakeAReferenceOutOfPartsAreRefused) {
    text.settings = environment("DOLLAR: \"$\", A: \"$DOLLAR{A}\"");
    EXPECT_THAT(refusal(), StartsWith(TOO_FAR + "A -> DOLLAR"));
}

TEST_F(ContextVariables, ThatReferToOthersAreTaken) {
    text.settings = environment("SHOW: blue, SHOT: \"${SHOW}_010\", LUTS: \"$SHOT/luts/%SHOW%\"");
    text.spaces = reader_of("$LUTS/grade.spi1d");
    const auto config = test_configs::load(folder, text.str());
    EXPECT_EQ(ocio::resolve_variables(config, "$LUTS/grade.spi1d"), "blue_010/luts/blue/grade.spi1d");
    EXPECT_EQ(ocio::resolve_variables(config, "no variables"), "no variables");
    EXPECT_EQ(ocio::resolve_variables(config, "$UNSET ${UNSET} 100 %"), "$UNSET ${UNSET} 100 %");
}

TEST_F(ContextVariables, OfTheProcessAreRefusedWhereATextRefersToThem) {
    const EnvGuard variable("QB_TEST_SELF", "$QB_TEST_SELF.");
    for (const char* source : {"$QB_TEST_SELF", "a/%QB_TEST_SELF%", "${QB_TEST_SELF}.spi1d"}) {
        text.spaces = reader_of(source);
        EXPECT_EQ(refusal(), CYCLE + "QB_TEST_SELF -> QB_TEST_SELF") << source;
    }
    text.spaces.clear();
    text.settings = "search_path: \"luts:$QB_TEST_SELF\"\n";
    EXPECT_EQ(refusal(), CYCLE + "QB_TEST_SELF -> QB_TEST_SELF");
}

TEST_F(ContextVariables, OfTheProcessAreNoMatterWhereNothingRefersToThem) {
    const EnvGuard variable("QB_TEST_SELF", "$QB_TEST_SELF.");
    text.spaces = reader_of("$QB_TEST_OTHER");
    EXPECT_EQ(refusal(), ACCEPTED);
}

TEST_F(ContextVariables, OfTheProcessAreFoundBehindEscapes) {
    const EnvGuard variable("QB_TEST_SELF", "$QB_TEST_SELF.");
    for (const char* source : {"\\x24QB_TEST_SELF", "\\u0025QB_TEST_SELF%", "$QB_TEST\\\n      _SELF"}) {
        text.spaces = reader_of(source);
        EXPECT_EQ(refusal(), CYCLE + "QB_TEST_SELF -> QB_TEST_SELF") << source;
    }
}

TEST_F(ContextVariables, OfTheProcessThatReplaceADefaultAreJudged) {
    const EnvGuard variable("QB_TEST_SELF", "${QB_TEST_SELF}");
    text.settings = environment("QB_TEST_SELF: harmless");
    EXPECT_EQ(refusal(), CYCLE + "QB_TEST_SELF -> QB_TEST_SELF");
}

TEST_F(ContextVariables, InTheNamesOfATransformAreJudged) {
    const EnvGuard variable("QB_TEST_SELF", "${QB_TEST_SELF}");
    text.spaces = "  - !<ColorSpace>\n    name: x\n    to_reference: !<ColorSpaceTransform> "
                  "{src: $QB_TEST_SELF, dst: lin}\n";
    EXPECT_EQ(refusal(), CYCLE + "QB_TEST_SELF -> QB_TEST_SELF");
}

class VariablesOfAConversion : public conversion_check::ConversionCheck {};

TEST_F(VariablesOfAConversion, AreJudgedBeforeItIsMade) {
    config_->addEnvironmentVar("QB_TEST_SPACE", "${QB_TEST_SPACE}x");
    space("a", conversion_check::conversion("$QB_TEST_SPACE", "raw"));
    EXPECT_EQ(refusal("a", "raw"), CYCLE + "QB_TEST_SPACE -> QB_TEST_SPACE");
    const auto file = ocio::create_file_transform();
    ocio::set_src(file, "%QB_TEST_SPACE%");
    space("b", file);
    EXPECT_EQ(refusal("b", "raw"), CYCLE + "QB_TEST_SPACE -> QB_TEST_SPACE");
}

} // namespace
