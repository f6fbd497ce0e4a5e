#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace conformance {

/// What a check found wrong.
class Findings {
public:
    /// Adds `what` unless `holds`.
    void expect(bool holds, std::string_view what);
    /// Adds `what` with both texts, in which bytes outside of ASCII are escaped, unless they are equal.
    void expect_text(std::string_view found, std::string_view expected, std::string_view what);
    /// The same for counts, positions and values.
    void expect_number(unsigned long long found, unsigned long long expected, std::string_view what);

    const std::vector<std::string>& get_lines() const { return lines; }

private:
    std::vector<std::string> lines;
};

/// Thrown by a check that needs something that is missing on this machine: the kit cannot run.
struct CannotRun : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// One part of the contract in host/.
struct Check {
    const char* name;     ///< GROUP.SUBJECT
    const char* contract; ///< What must hold, as a sentence without its full stop.
    const char* breaks;   ///< What fails in the module otherwise.
    void (*run)(Findings& findings);
};

using Checks = std::vector<Check>;

Checks list_string_checks();
Checks list_string_number_checks();
Checks list_container_checks();
Checks list_log_checks();
Checks list_class_checks();
Checks list_event_checks();
Checks list_event_change_checks();
Checks list_enumeration_checks();
Checks list_enumeration_sleep_checks();
Checks list_parser_checks();
Checks list_file_checks();
Checks list_app_checks();
Checks list_thread_checks();

} // namespace conformance
