#include "workflow/custom_records.h"

#include "tests/workflow/workflow_fixture.h"
#include "workflow/correction_text.h"
#include "workflow/published_cdls.h"

namespace {

using diagnostics::Code;
using testing::HasSubstr;
using workflow::PreferenceUse;
using workflow::Session;

constexpr char NUMBERS[] = "1.1,1,0.9/0,0,0/1,1,1/1";

class CustomRecords : public WorkflowTest {
protected:
    CustomRecords() {
        options.builtin_only = true;
        options.preferences_path = folder.file("preferences.yaml");
    }

    static void add_cdl(Session& session, const char* name) {
        workflow::add_custom_cdl(session, workflow::make_cdl_record(workflow::parse_numbers(NUMBERS), name));
    }
    static std::size_t count_cdls(const Session& session) {
        return workflow::get_published_cdls(session).size();
    }

    workflow::SessionOptions options;
};

TEST_F(CustomRecords, AreKeptOnceTheSessionSavesThem) {
    {
        Session session(options, PreferenceUse::CHANGE);
        add_cdl(session, "dropped");
    }
    {
        Session session(options, PreferenceUse::CHANGE);
        add_cdl(session, "warm");
        session.save_preferences();
    }
    const Session session(options);
    ASSERT_EQ(count_cdls(session), 2u) << "the one that changes nothing is the first";
    EXPECT_EQ(workflow::get_published_cdls(session)[1].correction.id, "warm");
}

TEST_F(CustomRecords, HaveNamesThatDifferByMoreThanCase) {
    Session session(options, PreferenceUse::CHANGE);
    add_cdl(session, "Warm");
    const diagnostics::Diagnostic taken = failure_of([&] { add_cdl(session, "warm"); });
    EXPECT_EQ(taken.code, Code::NAME_DUPLICATE);
    EXPECT_EQ(taken.message, "a CDL named 'Warm' already exists");
    EXPECT_EQ(failure_of([&] { add_cdl(session, "no cdl"); }).hint, "choose another name");
    EXPECT_EQ(count_cdls(session), 2u);
}

TEST_F(CustomRecords, AreRemovedByTheirExactNames) {
    Session session(options, PreferenceUse::CHANGE);
    add_cdl(session, "warm");
    const diagnostics::Diagnostic missing = failure_of([&] { workflow::remove_custom_cdl(session, "wram"); });
    EXPECT_EQ(missing.code, Code::USAGE_REFUSED);
    EXPECT_EQ(missing.hint, "did you mean 'warm'?");
    workflow::remove_custom_cdl(session, "warm");
    EXPECT_EQ(count_cdls(session), 1u);
    EXPECT_EQ(failure_of([&] { workflow::remove_custom_space(session, "sRGB"); }).message,
              "no custom color space 'sRGB'");
}

TEST_F(CustomRecords, OfCollectionsNeedAnId) {
    workflow::CustomSpaceRequest request;
    request.name = "graded";
    request.cdl = folder.write("grades.ccc", "<ColorCorrectionCollection><ColorCorrection id=\"a\"/>"
                                             "</ColorCorrectionCollection>");
    diagnostics::Diagnostics notes;
    for (const diagnostics::Diagnostic& refused :
         {failure_of([&] { workflow::make_custom_space(request); }),
          failure_of([&] { workflow::make_custom_cdl("graded", request.cdl, notes); })}) {
        EXPECT_EQ(refused.code, Code::USAGE);
        EXPECT_THAT(refused.message, HasSubstr("is a collection"));
    }
    EXPECT_EQ(workflow::make_custom_cdl("graded", request.cdl + ":a", notes).cccid, "a");
    EXPECT_TRUE(notes.empty());
}

} // namespace
