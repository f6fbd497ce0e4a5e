#include "colorio/ocio/lookup_memo.h"

#include <gmock/gmock.h>

#include "colorio/ocio/config.h"
#include "tests/colorio/ocio/conversion_check_fixture.h"

namespace {

using namespace conversion_check;
using ocio::LookupMemo;

class RememberedLookups : public ConversionCheck {
protected:
    /// What both ways between "raw" and each space are answered with.
    std::vector<std::string> all_refusals() {
        std::vector<std::string> refusals;
        for (int i = 0; i < ocio::get_num_color_spaces(config_); ++i) {
            const std::string name = ocio::get_color_space_name_by_index(config_, i);
            refusals.push_back(refusal(name.c_str(), "raw"));
            refusals.push_back(refusal("raw", name.c_str()));
        }
        return refusals;
    }
};

TEST_F(RememberedLookups, GiveTheSameVerdictsOnAChainThatIsTooDeep) {
    chain(300);
    const std::vector<std::string> each = all_refusals();
    const LookupMemo memo(config_);
    EXPECT_EQ(all_refusals(), each);
    EXPECT_EQ(all_refusals(), each) << "with everything remembered";
    EXPECT_EQ(refusal("s299", "raw"), ACCEPTED);
    EXPECT_THAT(refusal("s0", "raw"), testing::HasSubstr("nests more than 256 transforms"));
}

TEST_F(RememberedLookups, GiveTheSameVerdictsOnCyclesAndUnknownNames) {
    space("a", conversion("b", "raw"));
    space("b", conversion("a", "raw"));
    space("c", conversion("nowhere", "raw"));
    look("bright", "raw", shift());
    space("d", looks("bright"));
    space("e", group({shift(), conversion("d", "raw")}), conversion("raw", "c"));
    const std::vector<std::string> each = all_refusals();
    const LookupMemo memo(config_);
    EXPECT_EQ(all_refusals(), each);
    EXPECT_EQ(refusal("a", "raw").rfind(CYCLE, 0), 0u);
}

TEST_F(RememberedLookups, TakeASpaceThatWasLookedUpBefore) {
    space("a", shift());
    LookupMemo memo(config_);
    const ocio::ConstColorSpaceRcPtr raw = memo.find_space("raw");
    ASSERT_TRUE(raw);
    memo.add_space("a", raw);
    EXPECT_EQ(ocio::find_space(config_, "a"), raw) << "the config is not asked";
    EXPECT_EQ(memo.find_space("nowhere"), nullptr);
}

TEST_F(RememberedLookups, AreThoseOfOneConfigAndOfTheLatestMemo) {
    const ocio::ConfigRcPtr other = ocio::create_config();
    EXPECT_EQ(LookupMemo::find(config_), nullptr);
    LookupMemo first(config_);
    EXPECT_EQ(LookupMemo::find(config_), &first);
    EXPECT_EQ(LookupMemo::find(other), nullptr);
    {
        LookupMemo second(other);
        EXPECT_EQ(LookupMemo::find(other), &second);
        EXPECT_EQ(LookupMemo::find(config_), nullptr);
    }
    EXPECT_EQ(LookupMemo::find(config_), &first);
}

TEST_F(RememberedLookups, FindWhatTheLibraryFinds) {
    space("one", shift());
    const auto by_library = config_->getColorSpace("one");
    ASSERT_TRUE(by_library);
    const LookupMemo memo(config_);
    for (int twice = 0; twice < 2; ++twice) {
        EXPECT_EQ(ocio::find_space(config_, "one"), by_library);
        EXPECT_EQ(ocio::find_space(config_, "ONE"), by_library);
        EXPECT_FALSE(ocio::find_space(config_, "two"));
    }
}

} // namespace
