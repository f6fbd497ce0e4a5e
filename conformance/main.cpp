#include <algorithm>
#include <cstdio>
#include <cstring>

#include "conformance/runner.h"

namespace {

using conformance::Check;
using conformance::Checks;

constexpr const char* USAGE =
    "usage: %s [--list] [--here] [CHECK | GROUP]...\n"
    "\n"
    "Check a host's implementation of host/: the contract that the color-management module relies on.\n"
    "\n"
    "  --list  list the checks and what they check\n"
    "  --here  run the checks in this process, for a debugger (default: each in a separate process)\n"
    "  --help  show this text\n"
    "\n"
    "Exit status: 0 if all checks pass, 1 if one fails, 2 if they cannot be run.\n";

struct Options {
    bool lists = false;
    bool runs_here = false;
    Checks checks;
};

bool is_meant(const Check& check, std::string_view name) {
    const std::string_view full = check.name;
    return full == name || full.substr(0, full.find('.')) == name;
}

// False, after a message, for an unknown option or check.
bool read_options(int count, char** arguments, Options& options) {
    const Checks all = conformance::list_all_checks();
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--list") {
            options.lists = true;
        } else if (argument == "--here") {
            options.runs_here = true;
        } else {
            const size_t count_before = options.checks.size();
            std::copy_if(all.begin(), all.end(), std::back_inserter(options.checks),
                         [&](const Check& check) { return is_meant(check, argument); });
            if (options.checks.size() == count_before) {
                std::fprintf(stderr, "%s: error: no check '%s'; --list shows their names\n", arguments[0],
                             arguments[i]);
                return false;
            }
        }
    }
    if (options.checks.empty())
        options.checks = all;
    return true;
}

void print_outcome(const Check& check, const conformance::Outcome& outcome) {
    std::printf("%-8s%s: %s\n", outcome.findings.empty() ? "ok" : "FAILED", check.name, check.contract);
    for (const std::string& finding : outcome.findings)
        std::printf("        %s\n", finding.c_str());
    if (!outcome.findings.empty())
        std::printf("        in the module: %s\n", check.breaks);
}

int run(const Options& options, const char* program) {
    std::string failed;
    for (const Check& check : options.checks) {
        const conformance::Outcome outcome =
            options.runs_here ? conformance::run_here(check) : conformance::run_apart(check);
        if (!outcome.obstacle.empty()) {
            std::fflush(stdout);
            std::fprintf(stderr, "%s: error: cannot run %s: %s\n", program, check.name,
                         outcome.obstacle.c_str());
            return 2;
        }
        print_outcome(check, outcome);
        if (!outcome.findings.empty())
            failed.append(1, ' ').append(check.name);
    }
    if (failed.empty())
        std::printf("all %zu checks passed\n", options.checks.size());
    else
        std::printf("failed:%s\n", failed.c_str());
    return failed.empty() ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    if (count > 1 && std::strcmp(arguments[1], "--help") == 0) {
        std::printf(USAGE, arguments[0]);
        return 0;
    }
    Options options;
    if (!read_options(count, arguments, options))
        return 2;
    if (!options.lists)
        return run(options, arguments[0]);
    for (const Check& check : options.checks)
        std::printf("%-40s%s\n", check.name, check.contract);
    return 0;
}
