#include "tool/command.h"

#include <string>
#include <vector>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/exit_code.h"
#include "tool/json_output.h"
#include "workflow/bake.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio bake film.cube --from ACEScct --view "sRGB.Film" --config aces.ocio
  colorio bake show.clf --from ACEScg --shaper ACEScct --view "sRGB.Film" --size 65 --config aces.ocio
  colorio bake inverse.cube --inverse-view "sRGB.Film" --to ACEScct --config aces.ocio
  colorio bake look.csp --from ACEScct --to ACEScct --look "warm" --cdl grades.ccc:shot_010 --config show.ocio

The LUT covers 0 to 1 in the source color space, or in the shaper. It is read back, and its largest and mean
differences from the conversion are printed.)";

Json to_list(const float (&rgb)[3]) {
    return Json(std::vector<Json>{rgb[0], rgb[1], rgb[2]});
}

class BakeCommand : public SessionCommand {
public:
    explicit BakeCommand(Options& program)
        : SessionCommand(program, "bake", "Write a conversion as a LUT and measure its error", EXAMPLES) {
        options.add("output", request.path, "LUT to write: .cube, .csp, .clf, .3dl or .spi3d").required();
        add_conversion_options(options, conversion, "source color space, unless --inverse-view is given");
        add_inverse_view_option(options, conversion);
        add_step_options(options, conversion);
        options.add("--size", request.size, "colors along each side of the 3D LUT, 2 to 129 (default: 33)");
        options.add(
            "--shaper", request.shaper,
            "color space in which the 3D LUT is evenly spaced, such as a log one for a linear source");
        options
            .add("--shaper-size", request.shaper_size,
                 "entries of the 1D LUT (prelut) into the shaper (default: the default of the format)")
            .range(2, 65536);
        add_session_options();
        add_json_option();
    }

    ExitCode run(Console& console) override {
        if (conversion.from.empty() && conversion.inverse_view.empty())
            throw UsageError("no source: --from or --inverse-view is required");
        check_conversion(conversion);
        const workflow::ConversionRequest& wanted = conversion;
        request.conversion = wanted;
        const ToolSession session(session_options, console);
        const workflow::BakeReport report = workflow::bake_lut(session, request);
        console.report(report.notes);
        if (as_json)
            console.print_text(to_json(report).format());
        else
            print(report, console);
        return EXIT_CODE_DONE;
    }

private:
    void print(const workflow::BakeReport& report, Console& console) const {
        const workflow::ColorDifference& difference = report.difference;
        console.print(fmt::format("{}: {} to {}, written by {}", request.path, report.source,
                                  report.destination, report.writer));
        console.print(fmt::format("LUT against CPU, {} colors, {}:", difference.points, report.domain));
        console.print(fmt::format("  largest difference {:.3g} at {}: CPU {}, LUT {}", difference.largest,
                                  workflow::format_color(difference.at),
                                  workflow::format_color(difference.expected),
                                  workflow::format_color(difference.actual)));
        console.print(fmt::format("  mean difference    {:.3g}", difference.mean));
        console.print(fmt::format("  largest of grays   {:.3g} at {}", report.grays.largest,
                                  workflow::format_color(report.grays.at)));
        if (difference.incomparable > 0)
            console.print("  " + describe_incomparable(difference));
    }

    Json to_json(const workflow::BakeReport& report) const {
        const workflow::ColorDifference& difference = report.difference;
        return {{"output", request.path},
                {"source", report.source},
                {"destination", report.destination},
                {"writer", report.writer},
                {"domain", report.domain},
                {"difference",
                 {{"colors", difference.points},
                  {"largest", difference.largest},
                  {"mean", difference.mean},
                  {"largest_of_grays", report.grays.largest},
                  {"incomparable", difference.incomparable},
                  {"at", to_list(difference.at)},
                  {"cpu", to_list(difference.expected)},
                  {"lut", to_list(difference.actual)}}}};
    }

    ConversionChoice conversion;
    workflow::BakeRequest request;
};

} // namespace

const MakeCommand make_bake_command = make_command<BakeCommand>;

} // namespace tool
