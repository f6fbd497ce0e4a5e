#include "tool/command.h"

#include <string>

#include <fmt/format.h>

#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/exit_code.h"
#include "workflow/bake.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio bake film.cube --from ACEScct --view "sRGB.Film" --config aces.ocio
  colorio bake show.clf --from ACEScg --shaper ACEScct --view "sRGB.Film" --size 65 --config aces.ocio
  colorio bake inverse.cube --inverse-view "sRGB.Film" --to ACEScct --config aces.ocio
  colorio bake look.csp --from ACEScct --to ACEScct --look "warm" --cdl grades.ccc:shot_010 --config show.ocio

The LUT covers 0 to 1 in the source color space, or in the shaper. It is read back, and its largest and mean
differences from the conversion are printed.)";

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
        const workflow::ColorDifference& difference = report.difference;
        console.print(fmt::format("{}: {} to {}, written by {}", request.path, report.source,
                                  report.destination, report.writer));
        console.print(fmt::format("LUT against CPU, {} colors, {}:", difference.points, report.domain));
        console.print(fmt::format("  largest difference {:.3g} at {}: CPU {}, LUT {}", difference.largest,
                                  workflow::format_color(difference.at),
                                  workflow::format_color(difference.expected),
                                  workflow::format_color(difference.actual)));
        console.print(fmt::format("  mean difference    {:.3g}", difference.mean));
        if (difference.incomparable > 0)
            console.print("  " + describe_incomparable(difference));
        return EXIT_CODE_DONE;
    }

private:
    ConversionChoice conversion;
    workflow::BakeRequest request;
};

} // namespace

const MakeCommand make_bake_command = make_command<BakeCommand>;

} // namespace tool
