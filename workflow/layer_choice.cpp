#include "workflow/layer_choice.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/failure.h"
#include "image/data_names.h"
#include "image/image_layers.h"
#include "image/part_alpha.h"
#include "workflow/nearest_names.h"

namespace workflow {

namespace {

using diagnostics::Code;
using image::ImageLayer;
using image::LayerContent;
using Names = std::vector<std::string>;

constexpr char NOT_CHOSEN[] = "not chosen";
constexpr char SKIPPED[] = "skipped";
constexpr char MIXED[] = "the conversion mixes it with missing channels";

struct ReasonToLeave {
    LayerContent content;
    const char* reason;      ///< In the report.
    const char* explanation; ///< Why it cannot be converted when it is named; null when it can.
};
constexpr ReasonToLeave REASONS[] = {
    {LayerContent::SOME_COLOR, "without all of red, green and blue", nullptr},
    {LayerContent::NAMED_DATA, "data by name", nullptr},
    {LayerContent::CRYPTOMATTE, "cryptomatte", "the file declares it as a cryptomatte, whose values are ids"},
    {LayerContent::INTEGERS, "integers", "its channels are integers, which OpenEXR files use for ids"},
    {LayerContent::OTHER, "data", "it has no color channels (R, G and B, or Y)"},
};

const ReasonToLeave& get_reason(LayerContent content) {
    return *std::find_if(std::begin(REASONS), std::end(REASONS),
                         [&](const ReasonToLeave& entry) { return entry.content == content; });
}

bool contains(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string join(const Names& names) {
    return fmt::format("{}", fmt::join(names, ", "));
}

struct Part {
    std::string name;   ///< Empty for none.
    std::string number; ///< From 1.
    std::vector<ImageLayer> layers;
    std::size_t header = 0; ///< Position.
    std::size_t index = 0;  ///< Among the parts.

    /// Of color without a layer.
    bool has_main_alpha() const {
        return std::any_of(layers.begin(), layers.end(), [](const ImageLayer& layer) {
            return layer.is_color() && layer.color->name.empty() && layer.color->channels[3] >= 0;
        });
    }
    std::string get_title() const { return name.empty() ? "part " + number : name; }
    bool is_named_in(const Names& names) const {
        return contains(names, number) || contains(names, get_title());
    }
};

/// Chooses among the layers of one image.
class LayerChoice {
public:
    LayerChoice(const std::string& path, const std::string& format,
                const std::vector<image::PartHeader>& headers, const LayerOptions& options,
                const LayerConversion& conversion)
        : path(path), options(options), conversion(conversion) {
        find_parts(format, headers);
        takes_all = options.layers.empty() || contains(options.layers, ALL_LAYERS);
    }

    std::vector<PartChoice> run() {
        check_names();
        std::vector<PartChoice> choices;
        bool any = false;
        for (const Part& part : parts) {
            choices.push_back({part.get_title(), {}, {}, false});
            for (const ImageLayer& layer : part.layers)
                decide(part, layer, choices.back());
            any = any || !choices.back().chosen.empty();
        }
        if (!any && conversion.reason_to_leave.empty())
            fail_without_color(choices);
        return choices;
    }

private:
    void find_parts(const std::string& format, const std::vector<image::PartHeader>& headers);
    void lend_alpha(const std::vector<image::PartHeader>& headers, Part& part) const;
    std::string get_label(const Part& part, const ImageLayer& layer) const;
    bool is_named_in(const Names& names, const Part& part, const ImageLayer& layer) const {
        return contains(names, layer.name) || contains(names, get_label(part, layer));
    }
    void check_names() const;
    void check_known(const Names& wanted, const char* kind, const Names& accepted, const Names& listed) const;
    void decide(const Part& part, const ImageLayer& layer, PartChoice& choice) const;
    std::string find_reason_to_leave(const Part& part, const ImageLayer& layer) const;
    [[noreturn]] void fail_to_convert(const std::string& label, const std::string& reason) const;
    [[noreturn]] void fail_without_color(const std::vector<PartChoice>& choices) const;

    const std::string& path;
    const LayerOptions& options;
    const LayerConversion& conversion;
    bool takes_all = true;
    std::vector<Part> parts;
};

void LayerChoice::find_parts(const std::string& format, const std::vector<image::PartHeader>& headers) {
    image::PartContext context;
    context.format = format;
    for (const image::PartHeader& header : headers)
        for (std::string& name : image::get_cryptomatte_names(header.spec))
            context.cryptomattes.push_back(std::move(name));
    for (std::size_t i = 0; i < headers.size(); ++i) {
        if (headers[i].level > 0)
            continue;
        const OIIO::ImageSpec& spec = headers[i].spec;
        parts.push_back({image::get_part_name(spec), std::to_string(parts.size() + 1),
                         image::find_layers(spec, context)});
        parts.back().header = i;
        parts.back().index = parts.size() - 1;
    }
    const bool has_levels = std::any_of(headers.begin(), headers.end(),
                                        [](const image::PartHeader& part) { return part.level > 0; });
    if (format == "openexr" && !has_levels) // the pages of other formats have nothing to do with each other
        for (Part& part : parts)
            lend_alpha(headers, part);
}

/// To the layers of a part that have none: that of the first other part whose color is at the same place.
void LayerChoice::lend_alpha(const std::vector<image::PartHeader>& headers, Part& part) const {
    const OIIO::ImageSpec& spec = headers[part.header].spec;
    const auto lender = std::find_if(parts.begin(), parts.end(), [&](const Part& other) {
        return other.header != part.header && other.has_main_alpha() &&
               image::may_share_alpha(spec, headers[other.header].spec);
    });
    if (lender == parts.end())
        return;
    for (ImageLayer& layer : part.layers)
        if (layer.color && !layer.color->has_alpha() && image::find_view(spec, layer.color->name).empty())
            layer.color->alpha_part = static_cast<int>(lender->header);
}

std::string LayerChoice::get_label(const Part& part, const ImageLayer& layer) const {
    if (parts.size() == 1)
        return layer.name;
    const bool stands_for_part =
        part.layers.size() == 1 || layer.name == part.name || (layer.color && layer.color->name.empty());
    return stands_for_part ? part.get_title() : part.get_title() + ":" + layer.name;
}

void LayerChoice::check_names() const {
    Names layers, layer_labels, part_names, part_titles;
    for (const Part& part : parts) {
        part_names.insert(part_names.end(), {part.number, part.get_title()});
        part_titles.push_back(part.get_title());
        for (const ImageLayer& layer : part.layers) {
            layers.insert(layers.end(), {layer.name, get_label(part, layer)});
            layer_labels.push_back(get_label(part, layer));
        }
    }
    layers.push_back(ALL_LAYERS);
    check_known(options.layers, "layer", layers, layer_labels);
    layers.pop_back();
    check_known(options.parts, "part", part_names, part_titles);
    layers.insert(layers.end(), part_names.begin(), part_names.end());
    check_known(options.skipped, "layer or part", layers, layer_labels);
}

void LayerChoice::check_known(const Names& wanted, const char* kind, const Names& accepted,
                              const Names& listed) const {
    for (const std::string& name : wanted) {
        if (contains(accepted, name))
            continue;
        const std::string near = did_you_mean(name, accepted);
        diagnostics::Diagnostic failure = diagnostics::make_file_error(
            Code::LAYER_UNKNOWN, fmt::format("cannot convert '{}': it has no {} '{}'", path, kind, name),
            path);
        failure.subject = name;
        throw diagnostics::Failure(with_hint(
            std::move(failure), fmt::format("{}{}it has {}", near, near.empty() ? "" : " ", join(listed))));
    }
}

/// Why a layer is left, or nothing.
std::string LayerChoice::find_reason_to_leave(const Part& part, const ImageLayer& layer) const {
    if (!conversion.reason_to_leave.empty())
        return conversion.reason_to_leave;
    if (part.is_named_in(options.skipped) || is_named_in(options.skipped, part, layer))
        return SKIPPED;
    const bool is_in_part = options.parts.empty() || part.is_named_in(options.parts);
    const bool is_named = is_in_part && is_named_in(options.layers, part, layer);
    if (!layer.is_color() && !is_named)
        return get_reason(layer.content).reason;
    if (!is_named && !(is_in_part && takes_all))
        return NOT_CHOSEN;
    if (part.index < conversion.part_reasons.size() && !conversion.part_reasons[part.index].empty())
        return conversion.part_reasons[part.index];
    const std::string label = get_label(part, layer);
    if (!layer.is_convertible())
        fail_to_convert(label, get_reason(layer.content).explanation);
    const bool mixes = part.index < conversion.part_mixes.size() ? conversion.part_mixes[part.index]
                                                                 : conversion.mixes_channels;
    if (layer.color->has_all_colors() || !mixes)
        return "";
    if (is_named)
        fail_to_convert(label, "it lacks some of red, green and blue, which the conversion mixes");
    return MIXED;
}

void LayerChoice::decide(const Part& part, const ImageLayer& layer, PartChoice& choice) const {
    const std::string reason = find_reason_to_leave(part, layer);
    const std::string label = get_label(part, layer);
    if (reason.empty()) {
        choice.chosen.push_back({label, *layer.color});
    } else {
        choice.left.push_back({label, reason});
        choice.leaves_color = choice.leaves_color || layer.is_color();
    }
}

void LayerChoice::fail_to_convert(const std::string& label, const std::string& reason) const {
    diagnostics::fail_file(Code::IMAGE_UNSUPPORTED,
                           fmt::format("cannot convert the layer '{}' of '{}': {}", label, path, reason),
                           path);
}

void LayerChoice::fail_without_color(const std::vector<PartChoice>& choices) const {
    std::vector<LeftLayer> left;
    Names convertible;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        left.insert(left.end(), choices[i].left.begin(), choices[i].left.end());
        for (const ImageLayer& layer : parts[i].layers)
            if (layer.content == LayerContent::NAMED_DATA)
                convertible.push_back(get_label(parts[i], layer));
    }
    diagnostics::Diagnostic failure = diagnostics::make_file_error(
        Code::IMAGE_UNSUPPORTED,
        fmt::format("cannot convert '{}': no color channels to convert: {}", path, describe(left)), path);
    if (!convertible.empty())
        failure = with_hint(
            std::move(failure),
            fmt::format("layers that are data by name are converted only if the layers are named: {}",
                        join(convertible)));
    throw diagnostics::Failure(std::move(failure));
}

} // namespace

std::vector<image::ColorLayer> PartChoice::get_colors() const {
    std::vector<image::ColorLayer> colors;
    for (const ChosenLayer& layer : chosen)
        colors.push_back(layer.color);
    return colors;
}

std::vector<PartChoice> choose_layers(const std::string& path, const std::string& format,
                                      const std::vector<image::PartHeader>& headers,
                                      const LayerOptions& options, const LayerConversion& conversion) {
    return LayerChoice(path, format, headers, options, conversion).run();
}

} // namespace workflow
