// LUTs that only OpenColorIO 2 writes: of whole pipelines, with shapers, and in the Common LUT Format.

#include <regex>

#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr char CONFIG[] = QB_TEST_CONFIG_FOLDER "/version_2/config.ocio";

class BakeVersionTwo : public ToolTest {
protected:
    ToolRun bake(const std::string& name, std::vector<std::string> more) {
        more.insert(more.begin(), {"bake", path(name), "--config", CONFIG});
        return run(more);
    }

    /// The number behind some words of the results.
    static double get(const ToolRun& result, const std::string& words) {
        std::smatch found;
        const bool has = std::regex_search(result.out, found, std::regex(words + "([0-9.e+-]+)"));
        EXPECT_TRUE(has) << result << result.err;
        return has ? std::stod(found[1]) : 1e9;
    }
};

TEST_F(BakeVersionTwo, EveryFormatHoldsAWholePipeline) {
    for (const char* name : {"a.cube", "a.csp", "a.clf", "a.spi3d"}) {
        const ToolRun coarse =
            bake(name, {"--from", "picking", "--view", "Monitor.Plain", "--look", "warm", "--size", "9"});
        const ToolRun fine =
            bake(name, {"--from", "picking", "--view", "Monitor.Plain", "--look", "warm", "--size", "65"});
        ASSERT_THAT(coarse, Succeeds()) << name;
        ASSERT_THAT(fine, Succeeds()) << name;
        EXPECT_LT(get(fine, "largest difference "), get(coarse, "largest difference ")) << name;
    }
}

TEST_F(BakeVersionTwo, AShaperSpacesTheLutForALinearSource) {
    for (const char* name : {"a.cube", "a.csp", "a.clf"}) {
        const ToolRun result = bake(name, {"--from", "linear", "--view", "Monitor.Film", "--shaper", "log",
                                           "--shaper-size", "4096", "--size", "33"});
        ASSERT_THAT(result, Succeeds()) << name;
        EXPECT_THAT(result.out, AllOf(HasSubstr("0 to 1 in Scene/Log|log ("), HasSubstr("in Scene|linear)")))
            << name;
        EXPECT_LT(get(result, "mean difference +"), 1e-3) << name << result.out;
    }
}

TEST_F(BakeVersionTwo, DataIsNotConverted) {
    EXPECT_THAT(bake("a.cube", {"--from", "raw", "--view", "Monitor.Film"}),
                FailsWith(1, HasSubstr("holds data")));
}

} // namespace
