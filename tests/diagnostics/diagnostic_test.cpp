#include <gtest/gtest.h>

#include "diagnostics/diagnostic.h"
#include "diagnostics/file_failure.h"

using namespace diagnostics;

namespace {

Diagnostic make_xml_fault() {
    Diagnostic fault = make_file_error(Code::XML_MALFORMED, "the element is not closed", "grades.ccc");
    fault.line = 3;
    fault.column = 17;
    return fault;
}

} // namespace

TEST(DiagnosticText, HasThePlaceInFrontOfTheMessage) {
    EXPECT_EQ(format_located(make_xml_fault()), "grades.ccc:3:17: the element is not closed");
}

TEST(DiagnosticText, LeavesOutAColumnThatIsNotKnown) {
    Diagnostic fault = make_xml_fault();
    fault.column = 0;
    EXPECT_EQ(format_located(fault), "grades.ccc:3: the element is not closed");
}

TEST(DiagnosticText, IsTheMessageAloneWithoutALine) {
    EXPECT_EQ(format_located(make_error(Code::LUT_MISSING, "no LUT 'a.cube'")), "no LUT 'a.cube'");
}

TEST(DiagnosticText, HasTheHintAfterTheMessageWhenThatIsAsked) {
    EXPECT_EQ(format_with_hint(with_hint(make_xml_fault(), "close it")),
              "grades.ccc:3:17: the element is not closed; close it");
    EXPECT_EQ(format_with_hint(make_xml_fault()), format_located(make_xml_fault()));
}

TEST(DiagnosticText, IsFlattenedToOneLineWithoutAFinalFullStop) {
    EXPECT_EQ(flatten("  Error\n\tat  line 3. \r\n"), "Error at line 3");
    EXPECT_EQ(flatten("..."), "");
    EXPECT_EQ(flatten(""), "");
}

TEST(DiagnosticList, HasAWorstMember) {
    const Diagnostics list = {make_note(Code::USAGE, "a"), make_error(Code::USAGE, "b"),
                              make_error(Code::USAGE, "c"), make_warning(Code::USAGE, "d")};
    ASSERT_NE(find_worst(list), nullptr);
    EXPECT_EQ(find_worst(list)->message, "b");
    EXPECT_TRUE(has_error(list));
}

TEST(DiagnosticList, HasNoErrorAmongNotesAndWarnings) {
    EXPECT_FALSE(has_error({make_note(Code::USAGE, "a"), make_warning(Code::USAGE, "b")}));
    EXPECT_EQ(find_worst({}), nullptr);
}

TEST(DiagnosticCause, IsTheSameInOtherWords) {
    Diagnostic warning = make_xml_fault();
    warning.severity = Severity::WARNING;
    warning.message = "the CDL is not available";
    EXPECT_TRUE(has_same_cause(warning, make_xml_fault()));
    warning.line = 4;
    EXPECT_FALSE(has_same_cause(warning, make_xml_fault()));
}

TEST(DiagnosticList, TakesEachCauseOnceAtItsWorst) {
    Diagnostic warning = make_xml_fault();
    warning.severity = Severity::WARNING;
    Diagnostics list = {warning};
    add_new(list, {make_xml_fault(), make_error(Code::USAGE, "b"), warning});
    EXPECT_EQ(list, (Diagnostics{make_xml_fault(), make_error(Code::USAGE, "b")}));
}

TEST(DiagnosticList, CanBeNarrowedToASubject) {
    const Diagnostics list = {make_error(Code::USAGE, "1", "a"), make_error(Code::USAGE, "2", "B")};
    EXPECT_EQ(select(list, "b"), Diagnostics{list[1]});
    EXPECT_EQ(select(list, "c"), list);
}

TEST(FailureException, SaysItsWorstMessageAndCarriesAll) {
    const Failure failure(Diagnostics{make_note(Code::USAGE, "by the way"), make_xml_fault()});
    EXPECT_STREQ(failure.what(), "grades.ccc:3:17: the element is not closed");
    EXPECT_EQ(failure.get_worst(), make_xml_fault());
    EXPECT_EQ(failure.get_diagnostics().size(), 2u);
}

TEST(FileFailure, SaysWhatFailedOnWhichFileAndWhy) {
    EXPECT_EQ(make_read_error(Code::FILE_MISSING, "a.cc", NO_SUCH_FILE),
              make_file_error(Code::FILE_MISSING, "cannot read 'a.cc': no such file", "a.cc"));
    try {
        fail_to_write(Code::IMAGE_UNSUPPORTED, "a.jpg", "jpeg does not support half", "use .exr");
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.get_worst(),
                  with_hint(make_file_error(Code::IMAGE_UNSUPPORTED,
                                            "cannot write 'a.jpg': jpeg does not support half", "a.jpg"),
                            "use .exr"));
        return;
    }
    FAIL() << "nothing thrown";
}

TEST(DiagnosticHint, LeavesTheRestAsItIs) {
    Diagnostic expected = make_xml_fault();
    expected.hint = "close it";
    EXPECT_EQ(with_hint(make_xml_fault(), "close it"), expected);
    EXPECT_FALSE(expected == make_xml_fault());
}
