#include "tool/config_check.h"

#include <utility>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "tool/color_session.h"
#include "tool/published_names.h"

namespace tool {

namespace {

class ConfigCheck {
public:
    explicit ConfigCheck(ColorSession& session) : session(session) {
        report.scene_linear = ColorIO::get_full_color_space_name(ColorIO::get_ROLE_SCENE_LINEAR()).get_data();
    }

    CheckReport run() {
        for (const PublishedSpace& space : get_published_spaces())
            if (space.label != report.scene_linear)
                try_space(space.label);
        for (const PublishedView& view : get_published_views())
            try_view(view);
        return std::move(report);
    }

private:
    void try_space(const std::string& label) {
        ++report.spaces_tried;
        try_direction(label, "to " + report.scene_linear, label, report.scene_linear);
        try_direction(label, "from " + report.scene_linear, report.scene_linear, label);
    }

    void try_direction(const std::string& label, const std::string& direction, const std::string& from,
                       const std::string& to) {
        session.take_messages();
        ColorIOConverter converter;
        if (converter.configure(from.c_str(), to.c_str()))
            return;
        const FailureReason reason = find_failure_reason(session.take_messages());
        const bool again = !report.failures.empty() && report.failures.back().name == label &&
                           report.failures.back().reason.text == reason.text;
        if (again)
            report.failures.back().directions.push_back(direction);
        else
            report.failures.push_back({CheckFailure::COLOR_SPACE, label, {direction}, reason});
    }

    void try_view(const PublishedView& view) {
        ++report.views_tried;
        session.take_messages();
        ColorIOConverter converter;
        if (!converter.configure_for_display(report.scene_linear.c_str(), view.display.c_str(),
                                             view.view.c_str()))
            report.failures.push_back(
                {CheckFailure::VIEW, view.label, {}, find_failure_reason(session.take_messages())});
    }

    ColorSession& session;
    CheckReport report;
};

} // namespace

CheckReport check_config(ColorSession& session) {
    return ConfigCheck(session).run();
}

} // namespace tool
