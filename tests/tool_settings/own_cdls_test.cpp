#include "tests/colorio/library_differences.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;

class OwnCdls : public SettingsTest {
protected:
    json list(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"list", "cdls"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return print_json(arguments).at("cdls");
    }
};

constexpr char WARM[] = "2,1,0.5/0,0,0.1/1,1,1/0.8";

TEST_F(OwnCdls, AreListedBehindTheBuiltinOne) {
    EXPECT_EQ(print({"cdl", "add", "warm", "--values", WARM}),
              "warm: slope 2 1 0.5, offset 0 0 0.1, power 1 1 1, saturation 0.8\n");
    EXPECT_EQ(list(), json::parse(R"([
        {"position": 0, "name": "No CDL", "slope": [1, 1, 1], "offset": [0, 0, 0], "power": [1, 1, 1],
         "saturation": 1, "file": "", "file_id": "", "builtin": true},
        {"position": 1, "name": "warm", "slope": [2, 1, 0.5], "offset": [0, 0, 0.1], "power": [1, 1, 1],
         "saturation": 0.8, "file": "", "file_id": "", "builtin": false}])"));
    EXPECT_EQ(list({"--no-prefs"}).size(), 1u);
    EXPECT_THAT(print({"list", "cdls"}), HasSubstr("1  warm    2 1 0.5  0 0 0.1  1 1 1  0.8"));
}

TEST_F(OwnCdls, AreMadeFromACollectionByItsIds) {
    folder.write("grades.ccc", GRADES);
    print({"cdl", "add", "evening", path("grades.ccc") + ":cold"});
    const json cdl = list().at(1);
    EXPECT_EQ(cdl.at("name"), "evening");
    EXPECT_EQ(cdl.at("file"), path("grades.ccc"));
    EXPECT_EQ(cdl.at("file_id"), "cold");
    EXPECT_EQ(cdl.at("saturation"), 0.8);
}

TEST_F(OwnCdls, CopyTheNumbersOfFilesThatAreSearchedForNoId) {
    folder.write("shot.cdl", "<ColorDecisionList><ColorDecision><ColorCorrection id=\"a\"/></ColorDecision>"
                             "<ColorDecision><ColorCorrection id=\"b\"><SatNode><Saturation>0.5</Saturation>"
                             "</SatNode></ColorCorrection></ColorDecision></ColorDecisionList>");
    const ToolRun result = run({"cdl", "add", "gray", path("shot.cdl") + ":b"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, HasSubstr("the numbers are copied"));
    EXPECT_EQ(list().at(1).at("saturation"), 0.5);
    EXPECT_EQ(list().at(1).at("file"), "");
}

TEST_F(OwnCdls, CopyTheNumbersOfFilesThatTheColorLibraryReadsOtherwise) {
    folder.write("a.cc", "<ColorCorrection id=\"a\"><SopNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset>"
                         "<Power>1 1 1</Power></SopNode></ColorCorrection>");
    EXPECT_THAT(run({"cdl", "add", "a", path("a.cc")}).err, HasSubstr("the numbers are copied"));
    EXPECT_EQ(list().at(1).at("slope"), json({2, 2, 2}));
    EXPECT_EQ(list().at(1).at("file"), "");
    EXPECT_THAT(run({"space", "add", "x", "--cdl", path("a.cc")}), FailsWith(1, HasSubstr("SOPNode")));
}

TEST_F(OwnCdls, CopyTheNumbersOfFilesThatTheColorLibraryRefusesForOthers) {
    std::string grades = "<ColorCorrectionCollection>";
    for (const auto& [id, slope] : {std::pair("good", "2 2 2"), {"bad", "-1 1 1"}})
        grades += std::string("<ColorCorrection id=\"") + id + "\"><SOPNode><Slope>" + slope +
                  "</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>";
    folder.write("grades.ccc", grades + "</ColorCorrectionCollection>");
    const ToolRun result = run({"cdl", "add", "a", path("grades.ccc") + ":good"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, AllOf(HasSubstr("because of 'bad'"), HasSubstr("the numbers are copied")));
    EXPECT_EQ(list().at(1).at("slope"), json({2, 2, 2}));
    EXPECT_THAT(run({"cdl", "add", "b", path("grades.ccc") + ":bad"}),
                FailsWith(1, HasSubstr("invalid CDL 'bad'")));
}

TEST_F(OwnCdls, AreRemovedByName) {
    print({"cdl", "add", "warm", "--values", WARM});
    EXPECT_THAT(run({"cdl", "remove", "wram"}),
                FailsWith(1, AllOf(HasSubstr("no custom CDL 'wram'"), HasSubstr("did you mean 'warm'?"))));
    EXPECT_THAT(run({"cdl", "remove", "No CDL"}), FailsWith(1, HasSubstr("no custom CDL 'No CDL'")));
    EXPECT_EQ(print({"cdl", "remove", "warm"}), "warm: removed\n");
    EXPECT_EQ(list().size(), 1u);
}

TEST_F(OwnCdls, AreRefusedWhenTheyCannotWork) {
    folder.write("grades.ccc", GRADES);
    EXPECT_THAT(run({"cdl", "add", "x"}), FailsWith(2, HasSubstr("needs a file or --values")));
    EXPECT_THAT(run({"cdl", "add", "x", path("grades.ccc"), "--values", WARM}),
                FailsWith(2, HasSubstr("cannot be combined")));
    EXPECT_THAT(run({"cdl", "add", "x", path("grades.ccc")}), FailsWith(2, HasSubstr("is a collection")));
    EXPECT_THAT(run({"cdl", "add", "x", path("none.cc")}), FailsWith(1, HasSubstr("no such file")));
    EXPECT_THAT(run({"cdl", "add", "no cdl", "--values", WARM}),
                FailsWith(1, HasSubstr("a CDL named 'No CDL' already exists")));
    EXPECT_FALSE(folder.exists(PREFERENCES));
}

TEST_F(OwnCdls, AreRefusedWhenTheLibraryCannotReadThem) {
    SKIP_WHERE_LISTED();
    // An encoding that the tool reads and OpenColorIO does not.
    folder.write("odd.cc", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><ColorCorrection id=\"a\"/>");
    EXPECT_THAT(run({"cdl", "add", "x", path("odd.cc")}),
                FailsWith(1, AllOf(HasSubstr("cannot use the CDL 'x'"), HasSubstr("odd.cc"))));
    EXPECT_THAT(run({"space", "add", "x", "--cdl", path("odd.cc")}),
                FailsWith(1, AllOf(HasSubstr("cannot add the color space 'x'"), HasSubstr("odd.cc"))));
    EXPECT_FALSE(folder.exists(PREFERENCES));
}

TEST_F(OwnCdls, OfALibraryAreListedAndNeverSavedAsOnesOfTheUser) {
    const std::string numbers =
        "<SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
        "<SATNode><Saturation>1</Saturation></SATNode></ColorCorrection>";
    folder.write("library.ccc", "<ColorCorrectionCollection><ColorCorrection id=\"a\">" + numbers +
                                    "<ColorCorrection id=\"b\">" + numbers + "</ColorCorrectionCollection>");
    folder.write(PREFERENCES, "cdl_library_file_path: " + path("library.ccc") + "\n");
    EXPECT_EQ(list().size(), 3u);
    print({"cdl", "add", "mine", "--values", WARM});
    EXPECT_EQ(list().size(), 4u);
    folder.write("library.ccc", "<ColorCorrectionCollection/>");
    EXPECT_EQ(list().size(), 2u);
}

} // namespace
