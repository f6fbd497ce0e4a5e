#include "workflow/cdl_library.h"

#include <filesystem>
#include <vector>

#include "standalone/standalone_app.h"
#include "tests/workflow/workflow_fixture.h"
#include "workflow/live_config.h"
#include "workflow/published_cdls.h"

namespace {

namespace fs = std::filesystem;
using diagnostics::Code;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using workflow::LiveConfig;
using workflow::Session;

std::string make_correction(const std::string& attributes, const std::string& slope) {
    return "<ColorCorrection" + attributes + "><SOPNode><Slope>" + slope + " " + slope + " " + slope +
           "</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
           "<SATNode><Saturation>1</Saturation></SATNode></ColorCorrection>";
}

std::string make_collection(const std::string& corrections) {
    return "<ColorCorrectionCollection>" + corrections + "</ColorCorrectionCollection>";
}

/// A document of the form that the module does not read: color decisions around the color corrections.
std::string make_decision_list(const std::vector<std::string>& corrections) {
    std::string text = "<ColorDecisionList>";
    for (const std::string& correction : corrections)
        text += "<ColorDecision><MediaRef ref=\"a.exr\"/>" + correction + "</ColorDecision>";
    return text + "</ColorDecisionList>";
}

/// Sessions with the CDL library "shots.cdl" or another in the test's folder, whose temporary files are in
/// the folder "temp".
class CdlLibraries : public WorkflowTest {
protected:
    CdlLibraries() {
        fs::create_directory(folder.file("temp"));
        temporary.set(folder.file("temp"));
        options.builtin_only = true;
    }

    workflow::SessionOptions options_with(const std::string& name, const std::string& text) {
        folder.write(name, text);
        options.preferences_path = folder.write(
            "preferences.yaml",
            "file_type: qb_colorio preferences\ncdl_library_file_path: " + folder.file(name) + "\n");
        return options;
    }

    /// Red of white after the CDL.
    static float grade_white(const Session& session, const std::string& cdl) {
        workflow::ConversionRequest request;
        request.from = request.to = "linear";
        request.steps = {{workflow::ColorStep::CDL, cdl}};
        return convert(workflow::Conversion(session, request), {1, 1, 1, 1})[0];
    }

    /// "NAME FILE:ID" of the CDLs but the built-in one, with the file's path below the folder.
    std::vector<std::string> list(const Session& session) const {
        std::vector<std::string> cdls;
        for (const workflow::PublishedCdl& cdl : workflow::get_published_cdls(session))
            if (!cdl.is_builtin)
                cdls.push_back(cdl.correction.id + " " + fs::relative(cdl.file, folder.get_path()).string() +
                               ":" + cdl.file_id);
        return cdls;
    }

    bool has_temporary_files() const { return !fs::is_empty(folder.file("temp")); }

    workflow::SessionOptions options;

private:
    EnvGuard temporary{"TMPDIR"};
};

TEST_F(CdlLibraries, PublishTheColorCorrectionsOfADecisionList) {
    {
        const Session session(options_with(
            "shots.cdl",
            make_decision_list({make_correction(" id=\"a\"", "0.1"), make_correction(" id=\"b\"", "0.7")})));
        EXPECT_THAT(list(session), ElementsAre("a shots.cdl:a", "b shots.cdl:b"));
        EXPECT_EQ(workflow::get_published_cdls(session)[2].correction.slope[0], 0.7f);
        EXPECT_FLOAT_EQ(grade_white(session, "a"), 0.1f);
        EXPECT_FLOAT_EQ(grade_white(session, "b"), 0.7f) << "not the first of the file";
        EXPECT_THAT(session.get_notices(), IsEmpty());
        EXPECT_TRUE(has_temporary_files());
    }
    EXPECT_FALSE(has_temporary_files());
}

TEST_F(CdlLibraries, AreGivenToTheModuleAsTheyAreWhereItReadsThem) {
    const Session session(options_with(
        "shots.ccc", "<?xml version=\"1.0\"?>" + make_collection(make_correction(" id=\"a\"", "0.5") +
                                                                 make_correction(" id=\"b\"", "0.25"))));
    EXPECT_THAT(list(session), ElementsAre("a shots.ccc:a", "b shots.ccc:b"));
    EXPECT_FALSE(has_temporary_files());
}

/// Files from which the module or OpenColorIO would publish too little or other numbers.
TEST_F(CdlLibraries, PublishFormsThatTheModuleMisreads) {
    const std::string usual = make_correction(" id=\"a\"", "0.5");
    const auto replace = [](std::string text, const std::string& from, const std::string& to) {
        for (std::size_t at; (at = text.find(from)) != std::string::npos;)
            text.replace(at, from.size(), to);
        return text;
    };
    const std::string without_saturation =
        replace(usual, "<SATNode><Saturation>1</Saturation></SATNode>", "");
    const std::pair<const char*, std::string> files[] = {
        {"one.cc", usual},
        {"flat.cdl", make_collection(usual + make_correction(" id=\"b\"", "0.25"))},
        {"no_sat.ccc", make_collection(without_saturation)},
        {"spelled.ccc", make_collection(replace(usual, "SOPNode", "SopNode"))},
        {"tabs.ccc", make_collection(replace(usual, "0.5 0.5", "0.5\t0.5"))},
        {"described.ccc", make_collection("<Description>all</Description>" + usual)},
        {"deep.ccc", make_collection("<Inner>" + usual + "</Inner>")},
    };
    for (const auto& [name, text] : files) {
        SCOPED_TRACE(name);
        const Session session(options_with(name, text));
        EXPECT_THAT(list(session), Contains("a " + std::string(name) + ":a"));
        EXPECT_FLOAT_EQ(grade_white(session, "a"), 0.5f);
        EXPECT_EQ(workflow::get_published_cdls(session)[1].correction.slope[2], 0.5f);
        EXPECT_THAT(session.get_notices(), IsEmpty());
    }
}

TEST_F(CdlLibraries, NameColorCorrectionsWithoutAnIdAfterTheFile) {
    {
        const Session session(options_with("grade.cc", make_correction("", "0.5")));
        EXPECT_THAT(list(session), ElementsAre("grade grade.cc:"));
        EXPECT_FLOAT_EQ(grade_white(session, "grade"), 0.5f);
    }
    const Session session(options_with(
        "shots.ccc", make_collection(make_correction(" id=\"a\"", "0.5") + make_correction("", "0.25"))));
    EXPECT_THAT(list(session), ElementsAre("a shots.ccc:a", "shots 2 shots.ccc:"));
    EXPECT_FLOAT_EQ(grade_white(session, "shots 2"), 0.25f);
}

TEST_F(CdlLibraries, SayWhichColorCorrectionsAreNotPublished) {
    const Session session(
        options_with("shots.ccc", make_collection("\n" + make_correction(" id=\"a\"", "0.5") + "\n" +
                                                  make_correction(" id=\"n\"", "-1") + "\n" +
                                                  make_correction(" id=\"a\"", "0.25"))));
    EXPECT_THAT(list(session), ElementsAre("a shots.ccc:a"));
    EXPECT_FLOAT_EQ(grade_white(session, "a"), 0.5f);
    std::vector<std::string> messages;
    for (const diagnostics::Diagnostic& notice : session.get_notices()) {
        EXPECT_EQ(notice.severity, diagnostics::Severity::WARNING);
        messages.push_back(diagnostics::format_located(notice));
    }
    const std::string start = folder.file("shots.ccc") + ":";
    EXPECT_THAT(
        messages,
        ElementsAre(start + "3: color correction 2 ('n') is not published as a CDL: slope -1 is negative",
                    start + "4: color correction 3 ('a') is not published as a CDL: an earlier one has the "
                            "same name"));
}

TEST_F(CdlLibraries, HaveOneErrorWhereTheyCannotBeRead) {
    const std::pair<const char*, std::string> files[] = {
        {"Unmatched end tag", "<ColorDecisionList><ColorDecision></ColorDecisionList>"},
        {"no ColorCorrection element", "<ColorDecisionList/>"},
        {"color correction 1 ('a'): Slope contains 'red'",
         make_decision_list({make_correction(" id=\"a\"", "red")})},
        {"slope -1 is negative", make_decision_list({make_correction(" id=\"a\"", "-1")})},
    };
    for (const auto& [reason, text] : files) {
        SCOPED_TRACE(text);
        const LiveConfig live(options_with("shots.cdl", text));
        EXPECT_THAT(list(live.get_session()), IsEmpty());
        ASSERT_EQ(live.get_source_errors().size(), 1u);
        EXPECT_THAT(live.get_source_errors()[0].message, HasSubstr(reason));
        EXPECT_EQ(live.get_source_errors()[0].file, folder.file("shots.cdl"));
        EXPECT_FALSE(has_temporary_files());
    }
}

TEST_F(CdlLibraries, AreFollowedAtTheirOwnPath) {
    const auto make_text = [](const std::string& slope) {
        return make_decision_list({make_correction(" id=\"a\"", slope)});
    };
    LiveConfig live(options_with("shots.cdl", make_text("0.5")));
    EXPECT_THAT(live.get_source_files(), ElementsAre(folder.file("shots.cdl"), folder.file("shots.cdl")));

    folder.write("shots.cdl", make_text("0.25"));
    EXPECT_TRUE(live.reload());
    EXPECT_FLOAT_EQ(grade_white(live.get_session(), "a"), 0.25f);

    folder.write("shots.cdl", "<ColorDecisionList>");
    EXPECT_FALSE(live.reload());
    ASSERT_EQ(live.get_source_errors().size(), 1u);
    EXPECT_EQ(live.get_source_errors()[0].file, folder.file("shots.cdl"));
    EXPECT_FLOAT_EQ(grade_white(live.get_session(), "a"), 0.25f) << "the last good one stays";

    folder.write("shots.cdl", make_text("0.125"));
    EXPECT_TRUE(live.reload());
    EXPECT_THAT(live.get_source_errors(), IsEmpty());
    EXPECT_FLOAT_EQ(grade_white(live.get_session(), "a"), 0.125f);
}

TEST_F(CdlLibraries, ReplaceOneAnotherInEveryForm) {
    options.no_preferences = true;
    LiveConfig live(options);
    const std::string flat = make_collection(make_correction(" id=\"flat\"", "0.5"));
    const std::string nested = make_decision_list({make_correction(" id=\"nested\"", "0.25")});
    EXPECT_FALSE(live.use_cdl_library(folder.write("a.ccc", flat)));
    EXPECT_FALSE(live.use_cdl_library(folder.write("b.cdl", nested)));
    EXPECT_THAT(live.get_cdls(), ElementsAre("No CDL", "nested"));
    EXPECT_TRUE(live.use_cdl_library(folder.file("none.cdl")));
    EXPECT_THAT(live.get_cdls(), ElementsAre("No CDL", "nested"));
    EXPECT_FALSE(live.use_cdl_library(folder.file("a.ccc")));
    EXPECT_THAT(live.get_cdls(), ElementsAre("No CDL", "flat"));

    folder.write("a.ccc", nested);
    EXPECT_TRUE(live.reload());
    EXPECT_THAT(live.get_cdls(), ElementsAre("No CDL", "nested"));
    EXPECT_THAT(list(live.get_session()), ElementsAre("nested a.ccc:nested"));
    EXPECT_THAT(live.get_source_files(), Not(Contains(HasSubstr("/temp/"))));
}

TEST_F(CdlLibraries, AreCheckedWithoutACopy) {
    EXPECT_FALSE(workflow::check_cdl_library(
        folder.write("shots.cdl", make_decision_list({make_correction(" id=\"a\"", "0.5")}))));
    EXPECT_FALSE(has_temporary_files());
    const auto missing = workflow::check_cdl_library(folder.file("none.cdl"));
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->code, Code::FILE_MISSING);
    EXPECT_EQ(missing->file, folder.file("none.cdl"));
}

TEST_F(CdlLibraries, AreNamedInDiagnosticsOfTheCopy) {
    workflow::CdlLibrary library;
    const std::string path =
        folder.write("shots.cdl", make_decision_list({make_correction(" id=\"a\"", "0.5")}));
    ASSERT_FALSE(library.load(path));
    const std::string& copy = library.get_module_path();
    ASSERT_NE(copy, path);
    const auto reports = library.name_original(
        {diagnostics::make_file_error(Code::CDL_INVALID, "no 'a' in '" + copy + "', only in '" + copy + "'",
                                      copy),
         diagnostics::make_file_error(Code::CDL_INVALID, "no 'a' in 'x.ccc'", "x.ccc")});
    EXPECT_EQ(reports[0].file, path);
    EXPECT_EQ(reports[0].message, "no 'a' in '" + path + "', only in '" + path + "'");
    EXPECT_EQ(reports[1].file, "x.ccc");
    EXPECT_EQ(library.find_origin("x.ccc", "a").file, "x.ccc");
}

} // namespace
