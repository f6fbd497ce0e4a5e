#include "workflow/failure_reason.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using tool::explain_failure;
using tool::explain_library_message;
using tool::FailureKind;
using tool::find_failure_reason;

TEST(LibraryMessages, OfAMissingFileNameThePlacesWhereItWasSought) {
    const auto reason = explain_library_message(
        "The specified file reference 'film.spi1d' could not be located. The following attempts were made: "
        "'/show/luts/film.spi1d' : '/show/film.spi1d'.");
    EXPECT_EQ(reason.kind, FailureKind::MISSING_FILE);
    EXPECT_EQ(reason.text,
              "the file 'film.spi1d' is missing; looked for as '/show/luts/film.spi1d', '/show/film.spi1d'");
}

TEST(LibraryMessages, OfAMissingFileAreUnderstoodAsOlderLibrariesWriteThem) {
    const auto reason = explain_library_message(
        "The specified file reference  'film.spi1d' could not be located.  The following attempts were made: "
        "/show/luts/film.spi1d : /show/film.spi1d.");
    EXPECT_EQ(reason.kind, FailureKind::MISSING_FILE);
    EXPECT_EQ(reason.text,
              "the file 'film.spi1d' is missing; looked for as '/show/luts/film.spi1d', '/show/film.spi1d'");
}

TEST(LibraryMessages, OfAMatrixWithoutInverseSayWhatThatMeans) {
    for (const char* message :
         {"Singular Matrix can't be inverted.",
          "Cannot apply MatrixOffsetOp op. Matrix inverse does not exist for m44 (0 0 0 0 )."})
        EXPECT_EQ(explain_library_message(message).text,
                  "its matrix cannot be inverted, so this direction does not exist");
}

TEST(LibraryMessages, OfABadFileGiveTheReasonOfItsReader) {
    const auto reason = explain_library_message(
        "The specified transform file '/show/film.spi1d' could not be loaded.\nAll formats have been tried. "
        "(Enable debug log for errors from all formats.) The format for the file's extension gave the "
        "error:\n\n"
        "    'spi1d' failed with: At line 8: Not enough entries found");
    EXPECT_EQ(reason.kind, FailureKind::BAD_FILE);
    EXPECT_EQ(
        reason.text,
        "the file '/show/film.spi1d' is damaged or of an unknown kind: At line 8: Not enough entries found");
}

TEST(LibraryMessages, OfOtherKindsKeepTheirWords) {
    EXPECT_EQ(explain_library_message("the configuration forms a cycle: a -> b -> a").kind,
              FailureKind::CYCLE);
    EXPECT_EQ(
        explain_library_message("x.ocio is an OCIO 2.4 configuration and needs a newer colour library than "
                                "2.1.2")
            .kind,
        FailureKind::NEWER_CONFIG);
    EXPECT_EQ(explain_library_message("Color space 'nowhere' could not be found.").kind,
              FailureKind::UNKNOWN_NAME);
    const auto other = explain_library_message("Something\n  else.");
    EXPECT_EQ(other.kind, FailureKind::OTHER);
    EXPECT_EQ(other.text, "Something else");
}

TEST(ModuleMessages, GiveTheLibrarysFirstWords) {
    EXPECT_EQ(explain_failure({{LOG_ERROR, "Color Management: failed to configure."},
                               {LOG_ERROR, "OCIO exception: the first"},
                               {LOG_WARNING, "OCIO exception: a consequence"}}),
              "the first");
}

TEST(ModuleMessages, GiveTheFirstErrorWhereTheLibrarySaidNothing) {
    EXPECT_EQ(explain_failure({{LOG_WARNING, "Color Management: a doubt."},
                               {LOG_ERROR, "Color Management: the cause."},
                               {LOG_ERROR, "Color Management: a consequence."}}),
              "the cause");
}

TEST(ModuleMessages, GiveTheLastWarningWhereThereIsNoError) {
    EXPECT_EQ(explain_failure({{LOG_WARNING, "Color Management: one."},
                               {LOG_WARNING, "Color Management: two."},
                               {LOG_INFO, "Color Management: by the way."}}),
              "two");
    EXPECT_EQ(find_failure_reason({}).text, "the module gives no reason");
}

} // namespace
