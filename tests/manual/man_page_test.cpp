#include "manual/man_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using manual::CommandDescription;
using manual::OptionDescription;

TEST(ManPage, HasTheSectionsOfACommand) {
    OptionDescription input;
    input.names = {"input"};
    input.help = "image to read, or 'shot.$F4.exr'";
    input.is_positional = input.is_required = true;
    OptionDescription depth;
    depth.names = {"-d", "--depth"};
    depth.value = "{half,uint8}";
    depth.choices = {"half", "uint8"};
    depth.help = ".5 or a\\b";
    OptionDescription output;
    output.names = {"--output"};
    output.value = "FOLDER";
    output.is_required = true;
    const CommandDescription convert{"convert",
                                     "Convert ~ images",
                                     "\nExamples:\n  tool convert a\n  tool convert b\n\nThat is all.",
                                     {input, depth, output},
                                     {}};
    const CommandDescription tool{"tool", "A tool", "", {}, {convert}};
    const std::vector<manual::ManPage> pages = make_man_pages(tool, "tool 1.0");
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0].name, "tool");
    EXPECT_EQ(pages[0].text, R"(.TH "tool" 1 "" "tool 1.0" "User commands"
.SH "NAME"
tool \- A tool
.SH "SYNOPSIS"
\fBtool\fR [\fIOPTIONS\fR] \fICOMMAND\fR
.SH "COMMANDS"
.TP
\fBtool\-convert\fR(1)
Convert \(ti images
)");
    EXPECT_EQ(pages[1].name, "tool-convert");
    EXPECT_EQ(pages[1].text, R"(.TH "tool\-convert" 1 "" "tool 1.0" "User commands"
.SH "NAME"
tool\-convert \- Convert \(ti images
.SH "SYNOPSIS"
\fBtool convert\fR [\fIOPTIONS\fR] \fIinput\fR
.SH "ARGUMENTS"
.TP
\fIinput\fR
image to read, or \(aqshot.$F4.exr\(aq
.SH "OPTIONS"
.TP
\fB\-d\fR, \fB\-\-depth\fR {half,uint8}
\&.5 or a\eb
.TP
\fB\-\-output\fR \fIFOLDER\fR (required)

.SH "EXAMPLES"
.EX
  tool convert a
  tool convert b
.EE
.PP
That is all.
.SH "SEE ALSO"
\fBtool\fR(1)
)");
}

} // namespace
