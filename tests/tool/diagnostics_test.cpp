#include <cctype>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "diagnostics/code.h"
#include "tests/tool/diagnostic_rows.h"
#include "tests/tool/diagnostics_fixture.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

/// Diagnostics of any severity about the same error at the same place.
int count_same_cause(const std::string& lines, const json& wanted) {
    int count = 0;
    for (const char* severity : {"error", "warning", "note"})
        for (const json& diagnostic : parse_diagnostics(lines, severity)) {
            bool is_same = true;
            for (const char* key : {"code", "subject", "file", "line", "column"})
                is_same = is_same && diagnostic.at(key) == wanted.at(key);
            count += is_same ? 1 : 0;
        }
    return count;
}

class DiagnosticOf : public DiagnosticFiles, public testing::WithParamInterface<Fault> {
protected:
    std::string expand(const std::string& text) const {
        return text.substr(0, 1) == "@" ? path(text.substr(1)) : text;
    }
    std::vector<std::string> get_arguments() const {
        std::vector<std::string> arguments;
        for (const std::string& argument : GetParam().arguments)
            arguments.push_back(expand(argument));
        return arguments;
    }
};

TEST_P(DiagnosticOf, TheCauseIsOneInJsonAndInText) {
    const Fault& fault = GetParam();
    std::vector<std::string> arguments = get_arguments();
    testing::internal::CaptureStdout();
    const ToolRun text = run(arguments);
    arguments.insert(arguments.begin(), "--json-diagnostics");
    const ToolRun as_json = run(arguments);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << "printed past the console";
    EXPECT_EQ(as_json.code, text.code);
    const bool fails = fault.severity == "error";
    EXPECT_EQ(text.code, fails ? (fault.code == "usage" ? 2 : 1) : 0) << text.err;
    EXPECT_EQ(parse_diagnostics(as_json.err, "error").size(), fails ? 1u : 0u) << as_json.err;

    const std::vector<json> all = parse_diagnostics(as_json.err, fault.severity);
    ASSERT_EQ(all.size(), 1u) << as_json.err;
    const json& found = all.front();
    EXPECT_EQ(count_same_cause(as_json.err, found), 1) << as_json.err;
    EXPECT_EQ(found.at("code"), fault.code) << found;
    EXPECT_EQ(found.at("file"), expand(fault.file)) << found;
    EXPECT_EQ(found.at("line"), fault.line) << found;
    EXPECT_EQ(found.at("column"), fault.column) << found;
    if (!fault.subject.empty()) {
        EXPECT_EQ(found.at("subject"), fault.subject) << found;
    }
    EXPECT_EQ(found.size(), 8u) << found;

    if (fails) {
        EXPECT_THAT(text.err, HasSubstr("colorio: error: "));
        EXPECT_EQ(text.err.find("colorio: error: "), text.err.rfind("colorio: error: ")) << text.err;
    }
    const std::string message = found.at("message");
    std::string place;
    if (fault.line != 0) {
        place = expand(fault.file) + ":" + std::to_string(fault.line) + ":";
        if (fault.column != 0)
            place += std::to_string(fault.column) + ":";
        place += " ";
    }
    EXPECT_THAT(text.err, HasSubstr(place + message));
    if (const std::string hint = found.at("hint"); !hint.empty()) {
        EXPECT_THAT(text.err, HasSubstr("\nhint: " + hint + "\n"));
    }
}

TEST(DiagnosticRows, HoldEveryCodeThatACommandLineCanProvoke) {
    std::set<std::string> with_row;
    for (const Fault& fault : FAULTS)
        with_row.insert(fault.code);
    for (const diagnostics::CodeInfo& info : diagnostics::get_codes()) {
        const std::string name(info.name);
        EXPECT_NE(with_row.count(name), WITHOUT_ROW.count(name)) << name;
    }
    EXPECT_EQ(
        with_row.size() + WITHOUT_ROW.size(),
        static_cast<size_t>(std::distance(diagnostics::get_codes().begin(), diagnostics::get_codes().end())));
}

std::string name_row(const testing::TestParamInfo<Fault>& info) {
    std::string name = std::to_string(info.index);
    for (const std::string& argument : info.param.arguments) {
        name += '_';
        for (const char c : argument)
            if (std::isalnum(static_cast<unsigned char>(c)))
                name += c;
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Faults, DiagnosticOf, testing::ValuesIn(FAULTS), name_row);

} // namespace
