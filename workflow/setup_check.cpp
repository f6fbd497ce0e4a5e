#include "workflow/setup_check.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io_evaluation.h"
#include "diagnostics/failure.h"
#include "workflow/published_names.h"
#include "workflow/session.h"
#include "workflow/setup_environment.h"
#include "workflow/setup_files.h"

namespace workflow {

namespace {

using diagnostics::Diagnostic;

/// What an item of /proc/cpuinfo says of the first processor; empty where the system does not say.
std::string read_processor(const std::string& name) {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (const std::size_t colon = line.find(':'); line.rfind(name, 0) == 0 && colon != line.npos)
            return diagnostics::flatten(line.substr(colon + 1));
    return "";
}

/// The features that SIMD code is chosen by.
std::string find_features() {
    const std::set<std::string> known = {"sse4_1", "sse4_2",  "avx",      "avx2",  "fma",
                                         "f16c",   "avx512f", "avx512bw", "asimd", "sve"};
    std::istringstream flags(read_processor("flags") + read_processor("Features"));
    std::vector<std::string> found;
    for (std::string flag; flags >> flag;)
        if (known.count(flag) > 0)
            found.push_back(flag);
    return fmt::format("{}", fmt::join(found, " "));
}

SetupItem describe_vector_code() {
    const std::string target = ColorIOEvaluation::get_vector_target();
    if (target.empty())
        return {"SIMD code", "none: OpenColorIO converts all pixels", {}};
    if (!ColorIOEvaluation::get_vector_code())
        return {"SIMD code", fmt::format("{}, disabled by the environment", target), {}};
    return {"SIMD code", target, {}};
}

SetupSection examine_processor() {
    return {"processor",
            {{"model", read_processor("model name"), {}},
             {"features", find_features(), {}},
             {"threads", std::to_string(std::thread::hardware_concurrency()), {}},
             describe_vector_code()}};
}

std::string describe(const ConfigSource& source) {
    return source.kind == ConfigSource::BUILTIN
               ? source.get_name()
               : fmt::format("{} (from {})", source.path,
                             source.kind == ConfigSource::ENVIRONMENT ? "$OCIO" : source.get_kind_name());
}

/// What was reported while the config was loaded, but for what the preferences file has already.
void add_reports(SetupSection& section, const diagnostics::Diagnostics& reports,
                 const diagnostics::Diagnostics& known) {
    for (const Diagnostic& report : reports)
        if (std::none_of(known.begin(), known.end(),
                         [&](const Diagnostic& other) { return has_same_cause(other, report); }))
            section.items.push_back({get_name(report.severity), "", report});
}

/// Where it comes from is said of a broken config, too.
SetupSection examine_config(const SessionOptions& options, const diagnostics::Diagnostics& known) {
    SetupSection section{"config", {}};
    try {
        const Session session(options);
        section.items.push_back({"in use", describe(session.get_source()), {}});
        section.items.push_back(
            {"contents",
             fmt::format("{} color spaces, {} views, {} looks", get_published_spaces().size(),
                         get_published_views().size(), get_published_looks().size()),
             {}});
        diagnostics::Diagnostics reports = session.get_load_diagnostics();
        add_new(reports, session.get_notices());
        add_reports(section, reports, known);
    } catch (const ConfigFailure& failure) {
        section.items.push_back({"in use", describe(failure.get_source()), failure.get_worst()});
    } catch (const std::exception& error) {
        section.items.push_back({"in use", "", diagnostics::describe(error)});
    }
    return section;
}

} // namespace

SetupReport examine_setup(const SessionOptions& options) {
    SetupReport report = {{"libraries", {{"OpenColorIO", ColorIOEvaluation::get_library_version(), {}}}},
                          examine_processor(),
                          examine_environment(),
                          examine_folders(),
                          examine_preferences(options)};
    report.push_back(examine_config(options, get_problems({report.back()})));
    return report;
}

} // namespace workflow
