#include "workflow/config_check.h"

#include <utility>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/color_io_inspection.h"
#include "diagnostics/failure.h"
#include "workflow/conversion_stage.h"
#include "workflow/published_names.h"
#include "workflow/session.h"

namespace workflow {

namespace {

using diagnostics::Code;

std::string describe_path_to(const PublishedView& view) {
    std::string path;
    if (!view.view_transform.empty())
        path = fmt::format("the view transform '{}'", view.view_transform);
    if (!view.looks.empty())
        path += fmt::format("{}the looks '{}'", path.empty() ? "" : " and ", view.looks);
    return path;
}

CheckFailure make_subject(CheckFailure::Subject kind, std::string name, std::string path = {}) {
    CheckFailure subject;
    subject.subject = kind;
    subject.name = std::move(name);
    subject.path = std::move(path);
    return subject;
}

/// Why something does not work; empty if it does.
using Reason = std::optional<diagnostics::Diagnostic>;

template <class Make>
Reason try_stage(const Make& make) {
    try {
        make();
    } catch (const diagnostics::Failure& failure) {
        return failure.get_worst();
    }
    return std::nullopt;
}

template <class Works>
Reason try_inspection(const Works& works) {
    ColorIODiagnostics collector;
    if (works())
        return std::nullopt;
    return diagnostics::add_context({}, collector.take(), Code::CONVERSION_IMPOSSIBLE);
}

class ConfigCheck {
public:
    ConfigCheck() : scene_linear(ColorIO::get_ROLE_SCENE_LINEAR()) {
        report.scene_linear = ColorIO::get_full_color_space_name(scene_linear).get_data();
    }

    CheckReport run() {
        const ColorIOInspection::Batch batch;
        for (const PublishedSpace& space : get_published_spaces())
            if (space.label != report.scene_linear)
                try_space(space.label);
        for (const PublishedView& view : get_published_views())
            try_view(view);
        for (const ColorIOInspection::NamedTransform& transform : ColorIOInspection::get_named_transforms())
            try_named_transform(transform);
        for (const ColorIOInspection::ColorSpace& space : ColorIOInspection::get_color_spaces())
            if (!space.is_active)
                try_inactive_space(space);
        for (const CoreString& name : ColorIOInspection::get_looks())
            try_part(CheckFailure::LOOK, report.looks_tried, name, ColorIOInspection::try_look);
        for (const CoreString& name : ColorIOInspection::get_view_transforms())
            try_part(CheckFailure::VIEW_TRANSFORM, report.view_transforms_tried, name,
                     ColorIOInspection::try_view_transform);
        return std::move(report);
    }

private:
    using Failures = std::vector<CheckFailure>;

    void try_space(const std::string& label) {
        ++report.spaces_tried;
        const CheckFailure subject = make_subject(CheckFailure::COLOR_SPACE, label);
        add(report.failures, subject, "to " + report.scene_linear,
            try_stage([&] { return make_space_stage(label, report.scene_linear); }));
        add(report.failures, subject, "from " + report.scene_linear,
            try_stage([&] { return make_space_stage(report.scene_linear, label); }));
    }

    void try_view(const PublishedView& view) {
        ++report.views_tried;
        report.views_with_view_transform += view.view_transform.empty() ? 0 : 1;
        report.views_with_looks += view.looks.empty() ? 0 : 1;
        report.views_with_named_transform += view.named_transform.empty() ? 0 : 1;
        add(report.failures, make_subject(CheckFailure::VIEW, view.label, describe_path_to(view)), "",
            try_stage([&] { return make_view_stage(report.scene_linear, view); }));
    }

    /// Only the directions that the config defines: the inverse of the other may not exist.
    void try_named_transform(const ColorIOInspection::NamedTransform& transform) {
        ++report.named_transforms_tried;
        const CheckFailure subject = make_subject(CheckFailure::NAMED_TRANSFORM, transform.name.get_data());
        if (transform.has_forward)
            add(report.failures, subject, "forward", try_conversion(transform.name, scene_linear));
        if (transform.has_inverse)
            add(report.failures, subject, "inverse", try_conversion(scene_linear, transform.name));
    }

    void try_inactive_space(const ColorIOInspection::ColorSpace& space) {
        ++report.inactive_spaces_tried;
        const std::string label = make_label(space.family.get_data(), space.name.get_data());
        const CheckFailure subject = make_subject(CheckFailure::INACTIVE_COLOR_SPACE, label);
        add(report.notes, subject, "to " + report.scene_linear, try_conversion(space.name, scene_linear));
        add(report.notes, subject, "from " + report.scene_linear, try_conversion(scene_linear, space.name));
    }

    void try_part(CheckFailure::Subject subject, unsigned int& count, const CoreString& name,
                  bool (*works)(const CoreString& name)) {
        ++count;
        add(report.notes, make_subject(subject, name.get_data()), "",
            try_inspection([&] { return works(name); }));
    }

    static Reason try_conversion(const CoreString& from, const CoreString& to) {
        return try_inspection([&] { return ColorIOInspection::try_conversion(from, to); });
    }

    /// Adds the subject to `failures` if there is a reason. If it just failed for the same reason in another
    /// direction, adds the direction to that failure.
    static void add(Failures& failures, CheckFailure subject, const std::string& direction,
                    const Reason& reason) {
        if (!reason)
            return;
        subject.reason = *reason;
        const bool again = !failures.empty() && failures.back().subject == subject.subject &&
                           failures.back().name == subject.name && failures.back().reason == subject.reason;
        if (!again)
            failures.push_back(std::move(subject));
        if (!direction.empty())
            failures.back().directions.push_back(direction);
    }

    const CoreString scene_linear; ///< Without its family.
    CheckReport report;
};

} // namespace

CheckReport check_config() {
    return ConfigCheck().run();
}

ConfigFindings examine_config(const SessionOptions& options) {
    ConfigFindings findings;
    try {
        const Session session(options);
        findings.source = session.get_source();
        findings.messages = session.get_load_diagnostics();
        findings.report = check_config();
    } catch (const ConfigFailure& failure) {
        const diagnostics::Diagnostics& reasons = failure.get_diagnostics();
        findings.source = failure.get_source();
        findings.refusal = reasons.front();
        findings.messages.assign(reasons.begin() + 1, reasons.end());
    }
    return findings;
}

} // namespace workflow
