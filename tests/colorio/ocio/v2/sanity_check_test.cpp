#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/error.h"
#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/env_guard.h"

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using testing::HasSubstr;

constexpr char VIEWS[] = "  d:\n    - !<View> {name: v, colorspace: srgb}\n";
constexpr char FILES[] = R"(
  - !<ColorSpace>
    name: first
    from_scene_reference: !<FileTransform> {src: $QB_TEST_SHOT/film.cube}
  - !<ColorSpace>
    name: second
    from_scene_reference: !<FileTransform> {src: $QB_TEST_TAKE/film.cube}
)";

class SanityCheckOfVersionTwo : public testing::Test {
protected:
    Diagnostic find(const test_configs::ConfigText& text) {
        const auto config = test_configs::load(folder, text.str());
        try {
            ocio::sanity_check(config);
        } catch (const ocio::Exception& exception) {
            return ocio::get_cause(exception);
        }
        ADD_FAILURE() << "nothing thrown";
        return {};
    }

    test_configs::ConfigText text{"2", "search_path: luts\n", "  default: lin\n", VIEWS, ""};
    TempDir folder;
    EnvGuard shot{"QB_TEST_SHOT"}, take{"QB_TEST_TAKE"};
};

TEST_F(SanityCheckOfVersionTwo, TheFirstOfTwoUnsetVariablesIsNamed) {
    text.spaces = FILES;
    const Diagnostic cause = find(text);
    EXPECT_EQ(cause.code, Code::CONFIG_VARIABLE);
    EXPECT_EQ(cause.subject, "QB_TEST_SHOT");
}

TEST_F(SanityCheckOfVersionTwo, AnUnsetVariableOfTheSearchPathIsNamed) {
    const EnvGuard luts("QB_TEST_LUTS", "$QB_TEST_SHOT/luts");
    text.settings = "search_path: $QB_TEST_LUTS\n";
    text.spaces =
        "  - !<ColorSpace>\n    name: x\n    from_scene_reference: !<FileTransform> {src: film.cube}\n";
    const Diagnostic cause = find(text);
    EXPECT_EQ(cause.code, Code::CONFIG_VARIABLE);
    EXPECT_EQ(cause.subject, "QB_TEST_SHOT");
    EXPECT_EQ(cause.message, "the context variable 'QB_TEST_SHOT' in the search path '$QB_TEST_LUTS' is not "
                             "set (QB_TEST_LUTS -> QB_TEST_SHOT)");
}

TEST_F(SanityCheckOfVersionTwo, WhatIsWrongWithAllVariablesSetComesFirst) {
    text.spaces = FILES;
    text.roles += "  rendering: nowhere\n";
    const Diagnostic cause = find(text);
    EXPECT_EQ(cause.code, Code::CONFIG_INVALID);
    EXPECT_EQ(cause.subject, "nowhere");
    EXPECT_THAT(cause.message, HasSubstr("'nowhere'"));
}

} // namespace
