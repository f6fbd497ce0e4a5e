#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class CdlRead : public SettingsTest {
protected:
    ToolRun list(const std::string& content, const std::string& name = "grade.cc") {
        return run({"cdl", "list", folder.write(name, content)});
    }
};

constexpr char SOP[] = "<SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>";

TEST_F(CdlRead, ListsTheCorrectionsOfACollectionInItsOrder) {
    const json answer = print_json({"cdl", "list", folder.write("grades.ccc", GRADES)});
    EXPECT_EQ(answer.at("corrections"), json::parse(R"([
        {"position": 0, "id": "warm", "slope": [2, 1, 0.5], "offset": [0, 0, 0], "power": [1, 1, 1],
         "saturation": 1},
        {"position": 1, "id": "cold", "slope": [1, 1, 1], "offset": [0, 0, 0.25], "power": [1, 1, 1],
         "saturation": 0.8}])"));
}

TEST_F(CdlRead, PrintsATableOfIdsAndNumbers) {
    const std::string table = print({"cdl", "list", folder.write("grades.ccc", GRADES)});
    EXPECT_EQ(table, "#  id    slope    offset    power  saturation\n"
                     "0  warm  2 1 0.5  0 0 0     1 1 1  1\n"
                     "1  cold  1 1 1    0 0 0.25  1 1 1  0.8\n");
}

TEST_F(CdlRead, FindsTheCorrectionsOfADecisionList) {
    folder.write("shot.cdl",
                 "<ColorDecisionList><ColorDecision><MediaRef ref=\"a\"/><ColorCorrection id=\"x\">" +
                     std::string(SOP) +
                     "</ColorCorrection></ColorDecision><ColorDecision><ColorCorrection id=\"y\">"
                     "<SATNode><Saturation>0.5</Saturation></SATNode></ColorCorrection>"
                     "</ColorDecision></ColorDecisionList>");
    const json list = print_json({"cdl", "list", path("shot.cdl")}).at("corrections");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].at("id"), "x");
    EXPECT_EQ(list[1].at("id"), "y");
    EXPECT_EQ(list[1].at("saturation"), 0.5);
    EXPECT_EQ(list[1].at("slope"), json({1, 1, 1}));
}

TEST_F(CdlRead, TakesNumbersApartAtAnyBlankAndKeepsTheirDigits) {
    const ToolRun result =
        list("<ColorCorrection id=\"a\"><SOPNode><Slope>\n 1.23456\t+0.9\r\n  1e-3 </Slope>"
             "<Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("1.23456 0.9 0.001"));
}

TEST_F(CdlRead, SaysWhereAFileIsNoXml) {
    EXPECT_THAT(list("<ColorCorrection>\n  <SOPNode>\n</ColorCorrection>"),
                FailsWith(1, HasSubstr("grade.cc:3:1: Unmatched end tag")));
}

TEST_F(CdlRead, SaysWhichNumbersAreWrong) {
    const std::string before =
        "<ColorCorrectionCollection><ColorCorrection id=\"a\"/><ColorCorrection id=\"b\">";
    const std::string after = "</ColorCorrection></ColorCorrectionCollection>";
    EXPECT_THAT(list(before + "<SOPNode><Slope>1 1</Slope></SOPNode>" + after),
                FailsWith(1, EndsWith("correction 2 ('b'): Slope has 2 numbers instead of 3\n")));
    EXPECT_THAT(list(before + "<SOPNode><Slope>1 one 1</Slope></SOPNode>" + after),
                FailsWith(1, EndsWith("correction 2 ('b'): Slope contains 'one', which is not a number\n")));
    EXPECT_THAT(list(before + "<SOPNode><Slope>1 nan 1</Slope></SOPNode>" + after),
                FailsWith(1, HasSubstr("'nan', which is not a number")));
    EXPECT_THAT(list(before + "<SOPNode><Slope>1 1 1</Slope></SOPNode>" + after),
                FailsWith(1, EndsWith("correction 2 ('b'): Offset is missing\n")));
    EXPECT_THAT(list(before + "<SatNode><Saturation>1 2</Saturation></SatNode>" + after),
                FailsWith(1, EndsWith("Saturation has 2 numbers instead of 1\n")));
}

TEST_F(CdlRead, NamesTheLineOfWrongNumbers) {
    EXPECT_THAT(list("<ColorCorrection id='a'>\n  <SOPNode>\n    <Slope>1 1</Slope>\n  </SOPNode>\n"
                     "</ColorCorrection>\n"),
                FailsWith(1, HasSubstr("grade.cc:3: color correction 1 ('a'): Slope has 2 numbers")));
    EXPECT_THAT(list("<ColorCorrection>\n\n  <SOPNode/>\n</ColorCorrection>\n"),
                FailsWith(1, HasSubstr("grade.cc:3: color correction 1: Slope is missing")));
}

TEST_F(CdlRead, WarnsOfElementsThatHaveNoPartInACorrection) {
    const ToolRun result =
        list("<ColorCorrection id=\"a\"><ASC_SOP><Slope>2 2 2</Slope></ASC_SOP><Description>x"
             "</Description>" +
             std::string(SOP) + "</ColorCorrection>");
    EXPECT_THAT(result, Succeeds());
    EXPECT_EQ(result.err, "colorio: warning: " + path("grade.cc") +
                              ":1: the color correction 'a' contains elements that are ignored here and by "
                              "OpenColorIO: ASC_SOP\n");
    EXPECT_THAT(run({"cdl", "show", path("grade.cc")}).err, HasSubstr("ASC_SOP"));
    EXPECT_THAT(run({"cdl", "add", "x", path("grade.cc")}).err, HasSubstr("ASC_SOP"));
    EXPECT_THAT(list("<ColorCorrection id=\"a\">" + std::string(SOP) + "</ColorCorrection>").err,
                testing::IsEmpty());
}

TEST_F(CdlRead, SaysWhatIsNoXmlWithoutTheWordError) {
    EXPECT_THAT(list(""), FailsWith(1, EndsWith("grade.cc': No XML data\n")));
}

TEST_F(CdlRead, FailsOnFilesWithoutCorrectionsAndOnNone) {
    EXPECT_THAT(list("<Other/>"), FailsWith(1, HasSubstr("no ColorCorrection element")));
    EXPECT_THAT(run({"cdl", "list", path("missing.cc")}), FailsWith(1, HasSubstr("no such file")));
    EXPECT_THAT(run({"cdl", "list", folder.get_path()}), FailsWith(1, HasSubstr("it is a folder")));
}

TEST_F(CdlRead, ReadsWhatDeclaresAnotherEncoding) {
    const ToolRun result =
        list("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><ColorCorrection id=\"gr\xFCn\">" +
             std::string(SOP) + "</ColorCorrection>");
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(list("<ColorCorrection id=\"gr\xC3\xBCn\">" + std::string(SOP) + "</ColorCorrection>").out,
                HasSubstr("gr\xC3\xBCn"));
}

TEST_F(CdlRead, ReadsElementsNestedDeeperThanAnyStack) {
    std::string document;
    for (int i = 0; i < 200000; ++i)
        document += "<a>";
    document += "<ColorCorrection id=\"deep\"/>";
    for (int i = 0; i < 200000; ++i)
        document += "</a>";
    const ToolRun result = list(document);
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, HasSubstr("deep"));
}

TEST_F(CdlRead, ShowsOneCorrectionWithItsDescriptions) {
    folder.write("grades.ccc", GRADES);
    EXPECT_EQ(print({"cdl", "show", path("grades.ccc")}), "warm\n  Evening light\n  slope       2 1 0.5\n"
                                                          "  offset      0 0 0\n  power       1 1 1\n"
                                                          "  saturation  1\n");
    EXPECT_EQ(print_json({"cdl", "show", path("grades.ccc") + ":cold"}), json::parse(R"(
        {"id": "cold", "descriptions": [], "slope": [1, 1, 1], "offset": [0, 0, 0.25], "power": [1, 1, 1],
         "saturation": 0.8})"));
}

TEST_F(CdlRead, AnswersUnknownIdsWithTheNearestOnes) {
    folder.write("grades.ccc", GRADES);
    EXPECT_THAT(
        run({"cdl", "show", path("grades.ccc") + ":wram"}),
        FailsWith(1, AllOf(HasSubstr("no color correction 'wram'"), HasSubstr("did you mean 'warm'?"))));
}

TEST_F(CdlRead, TakesAColonInAPathAsPartOfIt) {
    folder.write("a:b.ccc", GRADES);
    EXPECT_THAT(print({"cdl", "show", path("a:b.ccc")}), HasSubstr("warm"));
    EXPECT_THAT(print({"cdl", "show", path("a:b.ccc") + ":cold"}), HasSubstr("cold"));
}

TEST_F(CdlRead, AnswersMistypedPartsWithTheNearestOnes) {
    EXPECT_THAT(run({"cdl", "lst", "x.cc"}), FailsWith(2, HasSubstr("did you mean 'list'?")));
    EXPECT_THAT(run({"cdl"}), FailsWith(2, HasSubstr("'cdl' needs one of list, show, write, add, remove")));
    EXPECT_THAT(run({"cdl", "list"}), FailsWith(2, HasSubstr("see colorio cdl list --help")));
}

TEST_F(CdlRead, ShowsExamplesInEveryHelpText) {
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"cdl"},
                                               {"cdl", "list"},
                                               {"cdl", "show"},
                                               {"cdl", "write"},
                                               {"cdl", "add"},
                                               {"cdl", "remove"},
                                               {"formats"},
                                               {"formats", "list"},
                                               {"formats", "set"},
                                               {"formats", "add"},
                                               {"formats", "remove"},
                                               {"formats", "check"},
                                               {"space"},
                                               {"space", "list"},
                                               {"space", "add"},
                                               {"space", "remove"},
                                               {"prefs"},
                                               {"prefs", "path"},
                                               {"prefs", "show"},
                                               {"legacy"}}) {
        std::vector<std::string> arguments = command;
        arguments.push_back("--help");
        const ToolRun result = run(arguments);
        EXPECT_THAT(result, Succeeds()) << command.back();
        EXPECT_THAT(result.out, HasSubstr("Examples:\n  colorio " + command.front())) << command.back();
    }
}

} // namespace
