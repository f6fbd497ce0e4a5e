#include "tests/support/file_size_limit.h"
#include "tests/tool/images.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class CdlWrite : public SettingsTest {
protected:
    json read(const std::string& name) { return print_json({"cdl", "list", path(name)}).at("corrections"); }
};

TEST_F(CdlWrite, WritesACorrectionThatReadsBack) {
    const ToolRun result = run({"cdl", "write", path("a.cc"), "--cdl", "grade=1.2,1,0.9/0,0.1,0/1,1,1/0.8"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(folder.read("a.cc"), HasSubstr("\t1.2 1.0 0.9\n"));
    EXPECT_EQ(read("a.cc"), json::parse(R"([{"position": 0, "id": "grade", "slope": [1.2, 1, 0.9],
        "offset": [0, 0.1, 0], "power": [1, 1, 1], "saturation": 0.8}])"));
}

TEST_F(CdlWrite, WarnsOfTheLargestLossOfDigits) {
    const ToolRun result =
        run({"cdl", "write", path("a.cc"), "--cdl", "grade=1.22,1,1/0,0,0.375/1,1,1/0.81"});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("the largest change is 0.025, offset of 'grade' (0.375 became 0.4)"),
                      HasSubstr("--exact")));
}

TEST_F(CdlWrite, KeepsEveryDigitWhenAsked) {
    const std::string numbers = "1.2345678,1e-05,0.1/0,-0.0078125,0.33333334/1,2.5,1/0.8765432";
    const ToolRun result = run({"cdl", "write", path("a.cc"), "--exact", "--cdl", "grade=" + numbers});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.err, IsEmpty());
    const json correction = read("a.cc").at(0);
    EXPECT_EQ(correction.at("slope").at(0).get<float>(), 1.2345678f);
    EXPECT_EQ(correction.at("slope").at(1).get<float>(), 1e-05f);
    EXPECT_EQ(correction.at("offset"), json({0, -0.0078125, 0.33333334}));
    EXPECT_EQ(correction.at("saturation").get<float>(), 0.8765432f);
    EXPECT_THAT(folder.read("a.cc"), HasSubstr("<Slope>1.2345678 1e-05 0.1</Slope>"));
}

TEST_F(CdlWrite, WritesWhatTheColorLibraryReadsToTheLastDigit) {
    print({"cdl", "write", path("all.ccc"), "--exact", "--collection", "--cdl", "a=1.7,1,1/0,0,0/1,1,1/1",
           "--cdl", "b=0.33333334,1.1,1e-05/0.1,0,0/1,1,1/1"});
    print({"space", "add", "graded", "--cdl", path("all.ccc") + ":b"});
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {1.0f, 1.0f, 1.0f}));
    print({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "graded"});
    const Image graded = read_image(path("out.exr"));
    EXPECT_FLOAT_EQ(graded.get("R"), 0.33333334f + 0.1f);
    EXPECT_FLOAT_EQ(graded.get("G"), 1.1f);
    EXPECT_FLOAT_EQ(graded.get("B"), 1e-05f);
}

TEST_F(CdlWrite, WritesACollection) {
    const std::vector<std::string> cdls = {"--collection", "--cdl", "a=2,2,2/0,0,0/1,1,1/1", "--cdl",
                                           "b=3,3,3/0,0,0/1,1,1/1"};
    for (const bool is_exact : {false, true}) {
        std::vector<std::string> arguments = {"cdl", "write", path("all.ccc")};
        arguments.insert(arguments.end(), cdls.begin(), cdls.end());
        if (is_exact)
            arguments.push_back("--exact");
        EXPECT_THAT(run(arguments), Succeeds());
        EXPECT_THAT(folder.read("all.ccc"), HasSubstr("<ColorCorrectionCollection"));
        const json list = read("all.ccc");
        ASSERT_EQ(list.size(), 2u) << is_exact;
        EXPECT_EQ(list[0].at("id"), "a");
        EXPECT_EQ(list[1].at("id"), "b");
        EXPECT_EQ(list[1].at("slope"), json({3, 3, 3}));
    }
}

TEST_F(CdlWrite, TakesNamesThatMarkupNeeds) {
    for (const char* is_exact : {"--collection", "--exact"}) {
        EXPECT_THAT(run({"cdl", "write", path("a.cc"), is_exact, "--cdl", "a=<b>&\"c\"=1,1,1/0,0,0/1,1,1/1"}),
                    Succeeds());
        EXPECT_EQ(read("a.cc").at(0).at("id"), "a=<b>&\"c\"") << is_exact;
    }
}

TEST_F(CdlWrite, RefusesWhatCannotBeMeantAndWritesNothing) {
    const auto write = [&](const std::vector<std::string>& cdls) {
        std::vector<std::string> arguments = {"cdl", "write", path("a.cc")};
        for (const std::string& cdl : cdls)
            arguments.insert(arguments.end(), {"--cdl", cdl});
        return run(arguments);
    };
    const std::string good = "=1,1,1/0,0,0/1,1,1/1";
    EXPECT_THAT(write({}), FailsWith(2, HasSubstr("--cdl is required")));
    EXPECT_THAT(write({"1,1,1/0,0,0/1,1,1/1"}), FailsWith(2, HasSubstr("expected NAME=SLOPE/OFFSET")));
    EXPECT_THAT(write({good}), FailsWith(2, HasSubstr("expected NAME=SLOPE/OFFSET")));
    EXPECT_THAT(write({"a=1,1,1/0,0,0/1,1,1"}), FailsWith(2, HasSubstr("; expected SLOPE/OFFSET")));
    EXPECT_THAT(write({"a=1,1/0,0,0/1,1,1/1"}),
                FailsWith(2, HasSubstr("slope takes three comma-separated numbers")));
    EXPECT_THAT(write({"a=1,1,1/0,0,x/1,1,1/1"}), FailsWith(2, HasSubstr("'x' is not a number")));
    EXPECT_THAT(write({"a=1,1,1/0,0,0/1,1,inf/1"}), FailsWith(2, HasSubstr("'inf' is not a number")));
    EXPECT_THAT(write({"a=1,1,1/0,0,0/1,1,1e39/1"}), FailsWith(2, HasSubstr("'1e39' is not a number")));
    EXPECT_THAT(write({"a" + good, "b" + good}), FailsWith(2, HasSubstr("need --collection")));
    EXPECT_THAT(write({"a" + good, "a" + good}), FailsWith(2, HasSubstr("'a' is given twice")));
    EXPECT_THAT(write({"No CDL" + good}), FailsWith(2, HasSubstr("the name 'No CDL' is reserved")));
    EXPECT_FALSE(folder.exists("a.cc"));
}

TEST_F(CdlWrite, RefusesInvalidNumbersAndWritesNothing) {
    const auto write = [&](const std::string& numbers) {
        return run({"cdl", "write", path("a.cc"), "--exact", "--cdl", "a=" + numbers});
    };
    EXPECT_THAT(write("-1.5,1,1/0,0,0/1,1,1/1"),
                FailsWith(2, HasSubstr("invalid CDL '-1.5,1,1/0,0,0/1,1,1/1': slope -1.5 is negative")));
    EXPECT_THAT(write("1,1,1/0,0,0/1,1,0/1"), FailsWith(2, HasSubstr("power 0 is not greater than 0")));
    EXPECT_THAT(write("1,1,1/0,0,0/1,-1,1/1"), FailsWith(2, HasSubstr("power -1 is not greater than 0")));
    EXPECT_THAT(write("1,1,1/0,0,0/1,1,1/-0.5"), FailsWith(2, HasSubstr("saturation -0.5 is negative")));
    EXPECT_FALSE(folder.exists("a.cc"));
    EXPECT_THAT(write("0,0,0/-1,-1,-1/0.001,1,1/0"), Succeeds());
}

TEST_F(CdlWrite, RefusesAPowerThatOneDecimalMakesInvalid) {
    const std::vector<std::string> arguments = {"cdl", "write", path("a.cc"), "--cdl",
                                                "a=1,1,1/0,0,0/0.04,1,1/1"};
    EXPECT_THAT(run(arguments), FailsWith(1, AllOf(HasSubstr("with one decimal, power 0 is not greater than "
                                                             "0 in 'a'"),
                                                   HasSubstr("--exact"))));
    EXPECT_FALSE(folder.exists("a.cc"));
    std::vector<std::string> exact = arguments;
    exact.emplace_back("--exact");
    EXPECT_THAT(run(exact), Succeeds());
}

TEST_F(CdlWrite, FailsWhereNothingCanBeWritten) {
    for (const char* option : {"--collection", "--exact"})
        EXPECT_THAT(run({"cdl", "write", path("missing/a.cc"), option, "--cdl", "a=1,1,1/0,0,0/1,1,1/1"}),
                    FailsWith(1, HasSubstr("cannot write '" + path("missing/a.cc") + "': ")));
}

TEST_F(CdlWrite, SaysWhyADiskIsFullAndKeepsTheOldFile) {
    folder.write("a.cc", "old");
    for (const char* option : {"--collection", "--exact"}) {
        const FileSizeLimit limit(16);
        EXPECT_THAT(run({"cdl", "write", path("a.cc"), option, "--cdl", "a=1,1,1/0,0,0/1,1,1/1"}),
                    FailsWith(1, HasSubstr("cannot write '" + path("a.cc") + "': File too large")));
    }
    EXPECT_EQ(folder.read("a.cc"), "old");
    EXPECT_EQ(count_files(), 1u);
}

} // namespace
