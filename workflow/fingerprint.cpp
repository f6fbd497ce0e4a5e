#include "workflow/fingerprint.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <OpenImageIO/hash.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sys/stat.h>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_evaluation.h"
#include "diagnostics/failure.h"
#include "files/input_file.h"
#include "workflow/conversion.h"
#include "workflow/module_call.h"
#include "workflow/session.h"

namespace workflow {

namespace {

/// To be changed when the same conversion of the same image gives another result than before.
constexpr int EDITION = 1;
constexpr std::size_t FINGERPRINT_LENGTH = 32;
/// Files are read in pieces.
constexpr std::size_t PIECE = std::size_t{1} << 20;

/// Collects named values. Names and lengths keep different lists of values apart.
class Digest {
public:
    void add(std::string_view name, std::string_view value) {
        sha.append(OIIO::string_view(fmt::format("{}:{}:", name, value.size())));
        sha.append(value.data(), value.size());
    }
    void add(std::string_view name, long long value) { add(name, std::to_string(value)); }

    /// The contents of a file; what cannot be read counts as empty.
    void add_file(const std::string& path) {
        files::InputFile file(path);
        OIIO::SHA1 contents;
        std::string piece;
        while (file.is_open() && file.read(PIECE, piece) && !piece.empty()) {
            contents.append(piece.data(), piece.size());
            piece.clear();
        }
        add("file", contents.digest());
    }

    std::string finish() { return to_lower(sha.digest()).substr(0, FINGERPRINT_LENGTH); }

private:
    static std::string to_lower(std::string text) {
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
        return text;
    }

    OIIO::SHA1 sha;
};

void add_config(const ConfigSource& source, Digest& digest) {
    if (source.kind == ConfigSource::BUILTIN || is_in_library(source.path))
        digest.add("config", source.get_name());
    else
        digest.add_file(source.path);
}

void add_stage(const ConversionStage& stage, Digest& digest) {
    ColorIOEvaluation::Origin origin;
    require_success("cannot describe " + stage.title, diagnostics::Code::LIBRARY_FAILURE,
                    [&] { return ColorIOEvaluation::find_origin(*stage.converter, origin); });
    digest.add("stage", origin.digest.view());
    for (const CoreString& file : origin.files)
        digest.add_file(file.get_data());
}

// The following name every member, so that a new one does not compile before it is considered here.

/// Names of color spaces and views are those of the conversion, which the request may spell in other ways.
void add_request(const ConversionRequest& request, Digest& digest) {
    const auto& [from, inverse_view, to, display, view, steps, takes_exposure] = request;
    digest.add("inverse", !inverse_view.empty());
    digest.add("exposure", takes_exposure);
    for (const ColorStep& step : steps) {
        const auto& [kind, name, is_inverse] = step;
        digest.add("kind", kind);
        digest.add("name", name);
        digest.add("inverse", is_inverse);
    }
    static_cast<void>(std::tie(from, to, display, view));
}

void add_colors(const image::ColorDescription& colors, Digest& digest) {
    const auto& [name, interop_id, chromaticities, cicp, icc_profile, dpx_transfer, dpx_colorimetric] =
        colors;
    digest.add("tag", name);
    digest.add("interop id", interop_id);
    digest.add("chromaticities", fmt::format("{}", fmt::join(chromaticities, " ")));
    digest.add("cicp", fmt::format("{}", fmt::join(cicp, " ")));
    digest.add("profile", {reinterpret_cast<const char*>(icc_profile.data()), icc_profile.size()});
    digest.add("transfer", dpx_transfer);
    digest.add("colorimetric", dpx_colorimetric);
}

void add_output(const image::OutputOptions& options, Digest& digest) {
    const auto& [depth, dithers, compression, alpha_rule, colors, keeps_space, neutrals_stay_neutral] =
        options;
    digest.add("depth", depth.is_known() ? depth.get_name() : "");
    digest.add("dithers", dithers);
    const auto& [method, quality] = compression;
    digest.add("compression", method);
    digest.add("quality", quality.value_or(-1));
    digest.add("alpha", static_cast<long long>(alpha_rule));
    add_colors(colors, digest);
    digest.add("same space", keeps_space);
    digest.add("neutrals", neutrals_stay_neutral);
}

void add_layers(const LayerOptions& options, Digest& digest) {
    const auto& [layers, parts, skipped] = options;
    const std::pair<const char*, const std::vector<std::string>&> lists[] = {
        {"layer", layers}, {"part", parts}, {"skipped", skipped}};
    for (const auto& [name, list] : lists)
        for (const std::string& text : list)
            digest.add(name, text);
}

/// A part in another color space than the image.
void add_part(const PartSettings& part, Digest& digest) {
    const auto& [space, conversion, convert, mixes_channels, failure, colors, keeps_space,
                 neutrals_stay_neutral] = part;
    for (const std::string& tag : space.tags)
        digest.add("tag of a part", tag);
    digest.add("source of the part", space.color_space);
    if (conversion)
        for (const ConversionStage& stage : conversion->get_stages())
            add_stage(stage, digest);
    add_colors(colors, digest);
    static_cast<void>(std::tie(convert, mixes_channels, failure, keeps_space, neutrals_stay_neutral));
}

/// The function that converts is described by the request and the stages; tags of the source only lead to
/// warnings and errors.
void add_settings(const ImageSettings& settings, Digest& digest) {
    const auto& [convert, output_options, layers, mixes_channels, data_space, threads, source_tags, part_tags,
                 is_strict, parts, fingerprint] = settings;
    add_output(output_options, digest);
    add_layers(layers, digest);
    digest.add("mixes", mixes_channels);
    digest.add("data space", data_space);
    for (const PartSettings& part : parts)
        add_part(part, digest);
    static_cast<void>(std::tie(convert, threads, source_tags, part_tags, is_strict, fingerprint));
}

} // namespace

std::string make_conversion_fingerprint(const Session& session, const ConversionRequest& request,
                                        const Conversion& conversion, const ImageSettings& settings) {
    Digest digest;
    digest.add("edition", EDITION);
    add_config(session.get_source(), digest);
    add_request(request, digest);
    digest.add("source", conversion.get_source());
    digest.add("destination", conversion.get_destination());
    for (const ConversionStage& stage : conversion.get_stages())
        add_stage(stage, digest);
    add_settings(settings, digest);
    return digest.finish();
}

std::string make_image_fingerprint(const ImageJob& job, const std::string& conversion_fingerprint) {
    if (conversion_fingerprint.empty())
        return "";
    Digest digest;
    digest.add("conversion", conversion_fingerprint);
    struct stat status = {};
    if (!is_in_place(job) && stat(job.input.c_str(), &status) == 0) {
        std::error_code error;
        digest.add("path", std::filesystem::absolute(job.input, error).lexically_normal().string());
        digest.add("size", status.st_size);
        digest.add("seconds", status.st_mtim.tv_sec);
        digest.add("nanoseconds", status.st_mtim.tv_nsec);
    }
    return digest.finish();
}

bool is_in_place(const ImageJob& job) {
    std::error_code error;
    return job.input == job.output || std::filesystem::equivalent(job.input, job.output, error);
}

} // namespace workflow
