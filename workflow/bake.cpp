#include "workflow/bake.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include "colorio/color_io_lut_writer.h"
#include "colorio/color_io_manager.h"
#include "diagnostics/file_failure.h"
#include "host/of/of_app.h"
#include "workflow/lut_format.h"
#include "workflow/module_call.h"
#include "workflow/name_resolution.h"
#include "workflow/session.h"
#include "workflow/text_file.h"

namespace workflow {

namespace {

using diagnostics::Code;

constexpr int MIN_SIZE = 2;
constexpr int MAX_SIZE = 129;
/// Colors a side that are compared: shares few positions with any LUT.
constexpr unsigned int COMPARED_EDGE = 38;
constexpr unsigned int COMPARED_GRAYS = 1021;
/// Differences of grays that are worth a warning.
constexpr double MAX_GRAY_ERROR = 0.01;
constexpr float LIMIT_TOLERANCE = 1e-3f;
/// Levels of the shaper whose curve the 1D LUT samples: more than any format has.
constexpr unsigned int CURVE_LEVELS = 65536;

/// Removes the file when it is destroyed.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string path) : path(std::move(path)) {}
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string path;
};

std::vector<float> remove_alpha(const std::vector<float>& rgba) {
    std::vector<float> rgb;
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        rgb.insert(rgb.end(), {rgba[i], rgba[i + 1], rgba[i + 2]});
    return rgb;
}

CoreArray<float> to_array(const std::vector<float>& values) {
    CoreArray<float> array;
    array.resize(static_cast<unsigned int>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i)
        array[static_cast<unsigned int>(i)] = values[i];
    return array;
}

class LutBaking {
public:
    LutBaking(const Session& session, const BakeRequest& request)
        : session(session), request(request), format(find_lut_format(request.path)) {
        check_request();
    }

    BakeReport run();

private:
    void check_request() const;
    void settle_source(const std::string& of_conversion);
    std::vector<float> undo_shaper(std::vector<float> rgba) const;
    std::vector<float> convert(std::vector<float> rgba) const;
    std::vector<float> make_curve() const;
    std::vector<float> make_grid() const;
    std::string make_text();
    std::string write_with_baker(const char* name);
    void replace_file(const std::string& text);
    void measure(const std::string& path);
    ColorDifference compare(const Conversion& lut, const std::vector<float>& levels) const;
    void warn_of_errors();
    bool is_between_spaces() const;

    const Session& session;
    const BakeRequest& request;
    const LutFormat& format;
    std::string source;                    ///< Label of the color space that the LUT takes.
    std::string shaper;                    ///< Likewise; empty without one.
    const Conversion* to_source = nullptr; ///< From the shaper.
    const Conversion* conversion = nullptr;
    BakeReport report;
};

void LutBaking::check_request() const {
    if (request.size < MIN_SIZE || request.size > MAX_SIZE)
        diagnostics::fail(Code::USAGE, fmt::format("invalid LUT size {}; range: {} to {}", request.size,
                                                   MIN_SIZE, MAX_SIZE));
    if (!request.shaper.empty() && !format.baker_with_shaper)
        diagnostics::fail(Code::USAGE, fmt::format("the format .{} has no shaper", format.extension));
    if (request.shaper_size > 0 && request.shaper.empty())
        diagnostics::fail(Code::USAGE, "a shaper size requires a shaper");
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::path(request.path).parent_path();
    if (!folder.empty() && !std::filesystem::is_directory(folder, error))
        diagnostics::fail_to_write(Code::FILE_UNWRITABLE, request.path, diagnostics::NO_SUCH_FOLDER);
}

bool LutBaking::is_between_spaces() const {
    return request.conversion.steps.empty() && request.conversion.view.empty() &&
           request.conversion.inverse_view.empty() && !conversion->is_identity();
}

/// From the shaper to the source, each channel as that of a gray: the 1D LUT of a file cannot mix them. That
/// is the conversion itself where both have the same primaries.
std::vector<float> LutBaking::undo_shaper(std::vector<float> rgba) const {
    if (!to_source)
        return rgba;
    std::vector<float> grays;
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        for (std::size_t c = 0; c < 3; ++c)
            grays.insert(grays.end(), {rgba[i + c], rgba[i + c], rgba[i + c], 1.0f});
    to_source->apply(grays.data(), static_cast<unsigned int>(grays.size() / 4), 1);
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        for (std::size_t c = 0; c < 3; ++c)
            rgba[i + c] = grays[(i / 4 * 3 + c) * 4 + c];
    return rgba;
}

/// From the shaper, or from the source where there is none.
std::vector<float> LutBaking::convert(std::vector<float> rgba) const {
    rgba = undo_shaper(std::move(rgba));
    conversion->apply(rgba.data(), static_cast<unsigned int>(rgba.size() / 4), 1);
    return rgba;
}

std::vector<float> LutBaking::make_curve() const {
    return remove_alpha(undo_shaper(make_grays(make_even_levels(to_source ? CURVE_LEVELS : 0))));
}

std::vector<float> LutBaking::make_grid() const {
    return remove_alpha(convert(make_color_grid(make_even_levels(static_cast<unsigned int>(request.size)))));
}

std::string LutBaking::write_with_baker(const char* name) {
    ColorIOLutWriter::Bake bake;
    bake.format = name;
    bake.source = remove_family(source).c_str();
    bake.shaper = remove_family(shaper).c_str();
    bake.size = request.size;
    bake.shaper_size = request.shaper_size;
    if (is_between_spaces())
        bake.target = remove_family(conversion->get_destination_space()).c_str();
    bake.grid = to_array(make_grid());
    bake.curve = to_array(make_curve());
    CoreString text;
    require_success(fmt::format("cannot bake '{}'", request.path), Code::CONVERSION_IMPOSSIBLE, [&] {
        text = ColorIOLutWriter::write(bake);
        return !text.is_empty();
    });
    report.writer = fmt::format("OpenColorIO ({})", name);
    return text.get_data();
}

std::string LutBaking::make_text() {
    const char* const baker = shaper.empty() ? format.baker : format.baker_with_shaper;
    if (baker && ColorIOLutWriter::has_format(baker))
        return write_with_baker(baker);
    if (!format.write || !shaper.empty())
        diagnostics::fail(
            Code::CONVERSION_IMPOSSIBLE,
            fmt::format("cannot bake '{}': this version of OpenColorIO does not write the format {}",
                        request.path, baker));
    report.writer = "colorio";
    return format.write(make_grid(), static_cast<unsigned int>(request.size));
}

/// Of the LUT at `path`, read by OpenColorIO.
void LutBaking::measure(const std::string& path) {
    ConversionRequest reading;
    reading.from = source;
    reading.steps = {{ColorStep::LUT, path}};
    const Conversion lut(session, reading);
    const std::vector<float> ends = undo_shaper(make_grays({0, 1}));
    report.domain = fmt::format("0 to 1 in {}", shaper.empty() ? report.source : shaper);
    if (to_source)
        report.domain += fmt::format(" ({:.4g} {:.4g} {:.4g} to {:.4g} {:.4g} {:.4g} in {})", ends[0],
                                     ends[1], ends[2], ends[4], ends[5], ends[6], source);
    report.difference = compare(lut, make_color_grid(make_even_levels(COMPARED_EDGE)));
    report.grays = compare(lut, make_grays(make_even_levels(COMPARED_GRAYS)));
}

/// `levels` are colors of the shaper, or of the source where there is none.
ColorDifference LutBaking::compare(const Conversion& lut, const std::vector<float>& levels) const {
    const std::vector<float> inputs = undo_shaper(levels);
    const auto count = static_cast<unsigned int>(inputs.size() / 4);
    std::vector<float> expected = inputs, actual = inputs;
    conversion->apply(expected.data(), count, 1);
    lut.apply(actual.data(), count, 1);
    return compare_colors(report.domain, inputs, expected, actual);
}

/// What an average over all colors hides.
void LutBaking::warn_of_errors() {
    const std::vector<float> grid = format.is_limited ? make_grid() : std::vector<float>{0};
    const auto [least, most] = std::minmax_element(grid.begin(), grid.end());
    if (*least < -LIMIT_TOLERANCE || *most > 1 + LIMIT_TOLERANCE)
        report.notes.push_back(
            with_hint(diagnostics::make_file_warning(
                          Code::LUT_INEXACT,
                          fmt::format("results from {:.4g} to {:.4g} are clipped: the format .{} holds "
                                      "0 to 1",
                                      *least, *most, format.extension),
                          request.path),
                      "bake a .cube or a .clf"));
    else if (report.grays.largest > MAX_GRAY_ERROR)
        report.notes.push_back(with_hint(
            diagnostics::make_file_warning(Code::LUT_INEXACT,
                                           fmt::format("grays differ by up to {:.2g}, at {}",
                                                       report.grays.largest, format_color(report.grays.at)),
                                           request.path),
            shaper.empty()
                ? "bake more colors a side, or from a log color space"
                : "the 1D LUT has even steps in the source, which are too wide for shadows: bake a .csp, or "
                  "a .clf without a shaper size, or from the shaper"));
}

/// Measured from a temporary file first, as a LUT that cannot be read replaces nothing. OpenColorIO keeps
/// what it once read from a path, so the name is new in this process: it has the time of its creation.
void LutBaking::replace_file(const std::string& text) {
    CoreString folder;
    if (!ColorIOManager::get_instance()->get_app()->create_temp_folder("bake", folder))
        diagnostics::fail(Code::FILE_UNWRITABLE,
                          fmt::format("cannot bake '{}': no folder for temporary files", request.path),
                          "set XDG_CACHE_HOME to a folder that can be written");
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    try {
        const TemporaryFile trial(
            fmt::format("{}/{}.{}.{}", folder.get_data(), getpid(), now.count(), format.extension));
        write_text_file(trial.path, text);
        measure(trial.path);
    } catch (const diagnostics::Failure& failure) {
        throw diagnostics::Failure(add_context(fmt::format("cannot bake '{}'", request.path),
                                               failure.get_diagnostics(), Code::CONVERSION_IMPOSSIBLE));
    }
    write_text_file(request.path, text);
}

/// A view takes the colors of its color space.
void LutBaking::settle_source(const std::string& of_conversion) {
    source = of_conversion;
    if (request.conversion.inverse_view.empty())
        return;
    diagnostics::Diagnostics known_notes;
    source = find_view(session, "", request.conversion.inverse_view, known_notes).color_space;
    if (source.empty())
        diagnostics::fail(Code::CONVERSION_IMPOSSIBLE,
                          fmt::format("cannot bake '{}': the config does not say in which color space the "
                                      "result of the view '{}' is",
                                      request.path, of_conversion));
}

BakeReport LutBaking::run() {
    const Conversion wanted(session, request.conversion);
    conversion = &wanted;
    report.source = wanted.get_source();
    settle_source(report.source);
    report.destination = wanted.get_destination();
    report.notes = wanted.get_notes();
    std::optional<Conversion> shaping;
    if (!request.shaper.empty()) {
        shaper = find_space(session, request.shaper, report.notes);
        ConversionRequest back;
        back.from = shaper;
        back.to = source;
        to_source = &shaping.emplace(session, back);
    }
    replace_file(make_text());
    warn_of_errors();
    return std::move(report);
}

} // namespace

std::vector<std::string> get_bake_extensions() {
    return get_lut_extensions();
}

BakeReport bake_lut(const Session& session, const BakeRequest& request) {
    return LutBaking(session, request).run();
}

} // namespace workflow
