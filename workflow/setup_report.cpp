#include "workflow/setup_report.h"

#include <sstream>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace workflow {

namespace {

constexpr char SECTION[] = "colorio-section";
constexpr char ITEM[] = "colorio-item";
constexpr char PROBLEM[] = "colorio-problem";
constexpr char SEPARATOR = '\t';

std::string format_line(const std::vector<std::string>& fields) {
    std::vector<std::string> flat;
    for (const std::string& field : fields)
        flat.push_back(diagnostics::flatten(field));
    return fmt::format("{}\n", fmt::join(flat, std::string(1, SEPARATOR)));
}

std::vector<std::string> split(const std::string& line) {
    std::vector<std::string> fields(1);
    for (const char character : line)
        if (character == SEPARATOR)
            fields.emplace_back();
        else
            fields.back() += character;
    return fields;
}

template <class Value, class Values>
Value find_named(const Values& values, const std::string& name, Value otherwise) {
    for (const Value value : values)
        if (get_name(value) == name)
            return value;
    return otherwise;
}

diagnostics::Diagnostic parse_problem(const std::vector<std::string>& fields) {
    using diagnostics::Severity;
    diagnostics::Diagnostic problem;
    for (const diagnostics::CodeInfo& info : diagnostics::get_codes())
        if (info.name == fields[1])
            problem.code = info.code;
    problem.severity =
        find_named(std::vector<Severity>{Severity::NOTE, Severity::WARNING}, fields[2], Severity::ERROR);
    problem.message = fields[3];
    problem.hint = fields[4];
    return problem;
}

} // namespace

diagnostics::Diagnostics get_problems(const SetupReport& report) {
    diagnostics::Diagnostics problems;
    for (const SetupSection& section : report)
        for (const SetupItem& item : section.items)
            if (item.problem)
                problems.push_back(*item.problem);
    return problems;
}

std::string format_report(const SetupReport& report) {
    std::string text;
    for (const SetupSection& section : report) {
        text += format_line({SECTION, section.name});
        for (const SetupItem& item : section.items) {
            text += format_line({ITEM, item.name, item.value});
            if (item.problem)
                text += format_line({PROBLEM, std::string(get_name(item.problem->code)),
                                     get_name(item.problem->severity), item.problem->message,
                                     item.problem->hint});
        }
    }
    return text;
}

SetupReport parse_report(const std::string& text) {
    SetupReport report;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::vector<std::string> fields = split(line);
        if (fields[0] == SECTION && fields.size() == 2)
            report.push_back({fields[1], {}});
        else if (fields[0] == ITEM && fields.size() == 3 && !report.empty())
            report.back().items.push_back({fields[1], fields[2], {}});
        else if (fields[0] == PROBLEM && fields.size() == 5 && !report.empty() &&
                 !report.back().items.empty())
            report.back().items.back().problem = parse_problem(fields);
    }
    return report;
}

} // namespace workflow
