#pragma once

#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

namespace workflow {

/// One thing that a support person asks for.
struct SetupItem {
    std::string name;
    std::string value;                              ///< May be empty.
    std::optional<diagnostics::Diagnostic> problem; ///< What is wrong with it.
};

/// Items about one subject.
struct SetupSection {
    std::string name; ///< "folders"
    std::vector<SetupItem> items;
};

using SetupReport = std::vector<SetupSection>;

/// The problems of all items.
diagnostics::Diagnostics get_problems(const SetupReport& report);

/// A report as lines of text that `parse_report` reads among others: a program passes it on through a pipe.
std::string format_report(const SetupReport& report);
/// The report in `text`; lines of other programs and libraries are ignored.
SetupReport parse_report(const std::string& text);

} // namespace workflow
