#include <OpenImageIO/imageio.h>
#include <fmt/format.h>

#include <lcms2.h>

#include "diagnostics/failure.h"
#include "gl/gl_facts.h"
#include "workflow/setup_check.h"

namespace workflow {

namespace {

/// 20407 is 2.4.7.
std::string format_version(int version) {
    return fmt::format("{}.{}.{}", version / 10000, version / 100 % 100, version % 100);
}

/// 2140 is 2.14.
std::string format_lcms_version(int version) {
    return fmt::format("{}.{}", version / 1000, version % 1000 / 10);
}

SetupSection examine_opengl() {
    SetupSection section{"opengl", {}};
    try {
        const gl::GlFacts facts = gl::get_gl_facts(gl::GlProfile::CORE);
        section.items = {
            {"vendor", facts.vendor, {}}, {"renderer", facts.renderer, {}}, {"version", facts.version, {}}};
    } catch (const std::exception& error) {
        diagnostics::Diagnostic problem = diagnostics::describe(error);
        problem.severity = diagnostics::Severity::WARNING; // images are converted without it
        section.items.push_back({"renderer", "none", problem});
    }
    return section;
}

} // namespace

SetupReport examine_images() {
    return {{"libraries",
             {{"OpenImageIO", format_version(OIIO::openimageio_version()), {}},
              {"image formats", OIIO::get_string_attribute("format_list"), {}},
              {"Little CMS", format_lcms_version(cmsGetEncodedCMMversion()), {}}}},
            examine_opengl()};
}

} // namespace workflow
