#include "workflow/config_check.h"

#include <utility>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_inspection.h"
#include "diagnostics/failure.h"
#include "workflow/conversion_stage.h"
#include "workflow/module_call.h"
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

Reason try_view_transform(const CoreString& name) {
    return try_stage([&] {
        require_success("", Code::CONVERSION_IMPOSSIBLE,
                        [&] { return ColorIOInspection::try_view_transform(name); });
    });
}

class ConfigCheck {
public:
    ConfigCheck() {
        report.scene_linear = ColorIO::get_full_color_space_name(ColorIO::get_ROLE_SCENE_LINEAR()).get_data();
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
            try_look(name.get_data());
        for (const CoreString& name : ColorIOInspection::get_view_transforms()) {
            ++report.view_transforms_tried;
            add(report.notes, make_subject(CheckFailure::VIEW_TRANSFORM, name.get_data()), "",
                try_view_transform(name));
        }
        return std::move(report);
    }

private:
    using Failures = std::vector<CheckFailure>;

    void try_space(const std::string& label) {
        ++report.spaces_tried;
        try_both_ways(report.failures, make_subject(CheckFailure::COLOR_SPACE, label));
    }

    /// From the color space of that name to scene-linear and back.
    void try_both_ways(Failures& failures, const CheckFailure& space) {
        add(failures, space, "to " + report.scene_linear,
            try_stage([&] { return make_space_stage(space.name, report.scene_linear); }));
        add(failures, space, "from " + report.scene_linear,
            try_stage([&] { return make_space_stage(report.scene_linear, space.name); }));
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
        const std::string name = transform.name.get_data();
        const CheckFailure subject = make_subject(CheckFailure::NAMED_TRANSFORM, name);
        if (transform.has_forward)
            add(report.failures, subject, "forward",
                try_stage([&] { return make_named_transform_stage(name, false); }));
        if (transform.has_inverse)
            add(report.failures, subject, "inverse",
                try_stage([&] { return make_named_transform_stage(name, true); }));
    }

    void try_inactive_space(const ColorIOInspection::ColorSpace& space) {
        ++report.inactive_spaces_tried;
        const std::string label = make_label(space.family.get_data(), space.name.get_data());
        try_both_ways(report.notes, make_subject(CheckFailure::INACTIVE_COLOR_SPACE, label));
    }

    /// On scene-linear colors, as conversions apply looks.
    void try_look(const std::string& name) {
        ++report.looks_tried;
        add(report.notes, make_subject(CheckFailure::LOOK, name), "",
            try_stage([&] { return make_look_stage(name, report.scene_linear); }));
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
