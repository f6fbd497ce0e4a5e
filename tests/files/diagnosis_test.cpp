#include "diagnostics/file_failure.h"
#include "files/diagnosis.h"

#include <cerrno>

#include <gtest/gtest.h>

using diagnostics::Code;
using files::Failure;
using files::Operation;

namespace {

Code code_of(const Failure& failure) {
    return to_diagnostic(failure).code;
}

} // namespace

TEST(FileDiagnosis, TellsTheCausesOfFailedReadingApart) {
    EXPECT_EQ(code_of(files::make_failure("a", Operation::READ, ENOENT)), Code::FILE_MISSING);
    EXPECT_EQ(code_of(files::make_failure("a/b", Operation::READ, ENOTDIR)), Code::FILE_MISSING);
    EXPECT_EQ(code_of(files::make_failure("a", Operation::READ, EISDIR)), Code::FILE_NOT_REGULAR);
    EXPECT_EQ(code_of(files::make_refusal("a", Operation::READ, diagnostics::NOT_A_REGULAR_FILE)),
              Code::FILE_NOT_REGULAR);
    EXPECT_EQ(code_of(files::make_failure("a", Operation::READ, EFBIG)), Code::FILE_TOO_LARGE);
    EXPECT_EQ(code_of(files::make_failure("a", Operation::READ, EACCES)), Code::FILE_UNREADABLE);
}

TEST(FileDiagnosis, IsOneForWritingAndLocking) {
    EXPECT_EQ(code_of(files::make_failure("a", Operation::WRITE, ENOENT)), Code::FILE_UNWRITABLE);
    EXPECT_EQ(code_of(files::make_refusal("a", Operation::LOCK, "in use")), Code::FILE_UNWRITABLE);
}

TEST(FileDiagnosis, NamesTheFileAndTheReason) {
    const diagnostics::Diagnostic missing =
        to_diagnostic(files::make_failure("/x/a.cc", Operation::READ, ENOENT));
    EXPECT_EQ(missing.file, "/x/a.cc");
    EXPECT_EQ(missing.message, "cannot read '/x/a.cc': no such file");
    EXPECT_EQ(missing.severity, diagnostics::Severity::ERROR);
    EXPECT_EQ(to_diagnostic(files::make_failure("b", Operation::WRITE, EACCES)).message,
              "cannot write 'b': Permission denied");
    EXPECT_EQ(files::get_reason(files::make_failure("c", Operation::READ, EISDIR)), "it is a folder");
}
