#include "workflow/failure_reason.h"

#include <new>
#include <stdexcept>
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

TEST(LibraryMessages, OfAPathWithAnUnsetContextVariableNameTheVariable) {
    const auto reason = [](const std::string& file, const std::string& attempts) {
        return explain_library_message(
            "The specified file reference '" + file +
            "' could not be located. The following attempts were made: " + attempts + ".");
    };
    const auto alone = reason("$CDL", "'/show/luts/$CDL' : '/show/$CDL'");
    EXPECT_EQ(alone.kind, FailureKind::UNSET_VARIABLE);
    EXPECT_EQ(alone.text,
              "the context variable 'CDL' in the path '$CDL' is not set; set it in the environment "
              "or in the config");
    EXPECT_EQ(reason("${SEQ}/%SHOT%.cube", "'/show/${SEQ}/%SHOT%.cube'").text,
              "the context variables 'SEQ', 'SHOT' in the path '${SEQ}/%SHOT%.cube' are not set; set them in "
              "the environment or in the config");
    EXPECT_EQ(reason("${SEQ}/$SHOT.cube", "'/show/ab/$SHOT.cube'").text,
              "the context variable 'SHOT' in the path '${SEQ}/$SHOT.cube' is not set; set it in the "
              "environment or in the config");
}

TEST(LibraryMessages, OfASetVariableOrAnOddNameNameTheMissingFile) {
    const auto reason = [](const std::string& file, const std::string& attempts) {
        return explain_library_message(
            "The specified file reference '" + file +
            "' could not be located. The following attempts were made: " + attempts + ".");
    };
    EXPECT_EQ(reason("$SHOT.cube", "'/show/ab.cube'").kind, FailureKind::MISSING_FILE);
    EXPECT_EQ(reason("100%.cube", "'/show/100%.cube'").text,
              "the file '100%.cube' is missing; looked for as '/show/100%.cube'");
    const auto searched = reason("x.cube", "'/show/$LUTS/x.cube' : '/show/x.cube'");
    EXPECT_EQ(searched.kind, FailureKind::MISSING_FILE);
    EXPECT_EQ(searched.text, "the file 'x.cube' is missing; looked for as '/show/$LUTS/x.cube', "
                             "'/show/x.cube'; is the context variable 'LUTS' of the search path set?");
}

TEST(LibraryMessages, OfANewerTransformFileNameItsVersion) {
    const auto reason = explain_library_message(
        "The specified transform file '/show/film.ctf' could not be loaded.\nAll formats have been tried. "
        "The format for the file's extension gave the error:\n\n"
        "    'Color Transform Format' failed with: Error parsing CTF file (/show/film.ctf). Error is: At "
        "line "
        "2: Unsupported transform file version '9.9' supplied.");
    EXPECT_EQ(reason.kind, FailureKind::NEWER_FILE);
    EXPECT_EQ(reason.text, "the file '/show/film.ctf' is of version 9.9, which needs a newer OpenColorIO");
}

TEST(LibraryMessages, OfAMemoryShortageSaySo) {
    EXPECT_EQ(explain_library_message("std::bad_alloc").kind, FailureKind::MEMORY);
    EXPECT_EQ(explain_library_message("std::bad_alloc").text, "out of memory");
    EXPECT_EQ(tool::explain_exception(std::bad_alloc()), "out of memory");
    EXPECT_EQ(tool::explain_exception(std::bad_array_new_length()), "out of memory");
    EXPECT_EQ(tool::explain_exception(std::runtime_error("a reason")), "a reason");
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
