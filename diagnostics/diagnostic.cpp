#include "diagnostics/diagnostic.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include <strings.h>

namespace diagnostics {

namespace {

auto tie(const Diagnostic& d) {
    return std::tie(d.code, d.severity, d.subject, d.file, d.line, d.column, d.message, d.hint);
}

} // namespace

const char* get_name(Severity severity) {
    switch (severity) {
    case Severity::NOTE:
        return "note";
    case Severity::WARNING:
        return "warning";
    case Severity::ERROR:
        break;
    }
    return "error";
}

bool operator==(const Diagnostic& a, const Diagnostic& b) {
    return tie(a) == tie(b);
}

bool has_same_cause(const Diagnostic& a, const Diagnostic& b) {
    return std::tie(a.code, a.subject, a.file, a.line, a.column) ==
           std::tie(b.code, b.subject, b.file, b.line, b.column);
}

const Diagnostic* find_worst(const Diagnostics& list) {
    const auto worst =
        std::max_element(list.begin(), list.end(),
                         [](const Diagnostic& a, const Diagnostic& b) { return a.severity < b.severity; });
    return worst == list.end() ? nullptr : &*worst;
}

bool has_error(const Diagnostics& list) {
    return std::any_of(list.begin(), list.end(),
                       [](const Diagnostic& d) { return d.severity == Severity::ERROR; });
}

void add_new(Diagnostics& list, const Diagnostics& others) {
    for (const Diagnostic& other : others) {
        const auto known = std::find_if(list.begin(), list.end(), [&](Diagnostic candidate) {
            candidate.severity = other.severity;
            return candidate == other;
        });
        if (known == list.end())
            list.push_back(other);
        else
            known->severity = std::max(known->severity, other.severity);
    }
}

std::vector<CountedDiagnostic> count_repeated(const Diagnostics& list) {
    std::vector<CountedDiagnostic> counted;
    for (const Diagnostic& one : list) {
        const auto known = std::find_if(counted.begin(), counted.end(),
                                        [&](const auto& candidate) { return candidate.diagnostic == one; });
        if (known == counted.end())
            counted.push_back({one, 1});
        else
            ++known->count;
    }
    return counted;
}

Diagnostics select(const Diagnostics& list, const std::string& subject) {
    Diagnostics selected;
    std::copy_if(list.begin(), list.end(), std::back_inserter(selected), [&](const Diagnostic& diagnostic) {
        return strcasecmp(diagnostic.subject.c_str(), subject.c_str()) == 0;
    });
    return selected.empty() ? list : selected;
}

std::string format_located(const Diagnostic& diagnostic) {
    if (diagnostic.line == 0)
        return diagnostic.message;
    std::string place = diagnostic.file + ":" + std::to_string(diagnostic.line);
    if (diagnostic.column != 0)
        place += ":" + std::to_string(diagnostic.column);
    return place + ": " + diagnostic.message;
}

std::string format_with_hint(const Diagnostic& diagnostic) {
    return format_located(diagnostic) + (diagnostic.hint.empty() ? "" : "; " + diagnostic.hint);
}

std::string flatten(const std::string& text) {
    std::string line;
    for (const char character : text) {
        const bool blank = character == ' ' || character == '\n' || character == '\t' || character == '\r';
        if (!blank)
            line += character;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    while (!line.empty() && (line.back() == ' ' || line.back() == '.'))
        line.pop_back();
    return line;
}

} // namespace diagnostics
