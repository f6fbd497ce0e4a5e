#include "workflow/rounded_document.h"

#include "tests/workflow/workflow_fixture.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"

namespace {

using diagnostics::Code;
using testing::HasSubstr;
using testing::IsEmpty;

using RoundedDocuments = WorkflowTest;

TEST_F(RoundedDocuments, AreWrittenWithoutASessionAndTellTheLargestLoss) {
    const std::string path = folder.file("a.cc");
    const auto write = [&](const char* text) {
        return workflow::write_rounded_document(path, {workflow::parse_named_numbers(text)}, false);
    };
    EXPECT_THAT(write("a=1.2,1,0.9/0,0.1,0/1,1,1/0.8"), IsEmpty());
    const diagnostics::Diagnostics lossy = write("a=1.25,1,1/0,0,0.375/1,1,1/1");
    ASSERT_EQ(lossy.size(), 1u);
    EXPECT_EQ(lossy[0].severity, diagnostics::Severity::WARNING);
    EXPECT_THAT(lossy[0].message, HasSubstr("the largest change is 0.05, slope of 'a' (1.25 became 1.2)"));
    EXPECT_FLOAT_EQ(workflow::read_corrections(path)[0].slope[0], 1.2f);
}

TEST_F(RoundedDocuments, AreNotWrittenWithNumbersThatRoundingMakesInvalid) {
    const diagnostics::Diagnostic refused = failure_of([&] {
        workflow::write_rounded_document(folder.file("a.cc"),
                                         {workflow::parse_named_numbers("a=1,1,1/0,0,0/0.04,1,1/1")}, false);
    });
    EXPECT_EQ(refused.code, Code::CDL_INVALID);
    EXPECT_THAT(refused.message, HasSubstr("power 0 is not greater than 0"));
    EXPECT_FALSE(folder.exists("a.cc"));
}

} // namespace
