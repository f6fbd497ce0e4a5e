#include "workflow/conversion_stage.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_candidate.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "colorio/color_io_transforms.h"
#include "diagnostics/failure.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "host/of/of_app.h"
#include "host/sys/sys_env.h"
#include "workflow/config_source.h"
#include "workflow/correction_file.h"
#include "workflow/ignoring_case.h"
#include "workflow/module_call.h"
#include "workflow/name_resolution.h"
#include "workflow/nearest_names.h"
#include "workflow/session.h"

namespace workflow {

namespace {

using diagnostics::Code;

/// Path of the active config; empty for one that is not a file.
std::string get_config_file() {
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    if (manager.is_using_tavelion_config())
        return "";
    const OfApp& app = *manager.get_app();
    const CoreString& path = app.get_color_space_file_path();
    const CoreString file =
        app.get_use_color_space_file() && !path.is_empty() ? path : sys_get_env(OCIO_VARIABLE);
    return is_in_library(file.get_data()) ? "" : file.get_data();
}

/// The same error; one of the config itself, which OpenColorIO does not locate, with its place in the config.
diagnostics::Diagnostic locate_in_config(diagnostics::Diagnostic error) {
    constexpr Code OF_CONFIG[] = {Code::CONFIG_CYCLE, Code::CONFIG_TOO_COMPLEX, Code::LOOK_UNKNOWN,
                                  Code::CONFIG_VARIABLE, Code::MATRIX_SINGULAR};
    const bool is_of_config =
        std::find(std::begin(OF_CONFIG), std::end(OF_CONFIG), error.code) != std::end(OF_CONFIG);
    if (is_of_config && error.file.empty()) {
        error.file = get_config_file();
        ColorIOCandidate::locate_in_config(error);
    }
    return error;
}

/// The stage with the converter that `configure` configures. Throws with the module's reasons when it returns
/// false.
template <class Configure>
ConversionStage make_stage(std::string title, const std::string& what, const Configure& configure) {
    ConversionStage stage{std::move(title), std::make_unique<ColorIOConverter>()};
    try {
        require_success(what, Code::CONVERSION_IMPOSSIBLE, [&] { return configure(*stage.converter); });
    } catch (const diagnostics::Failure& failure) {
        throw diagnostics::Failure(locate_in_config(failure.get_worst()));
    }
    return stage;
}

/// The stage that `make` makes. Its error begins with `what`.
template <class Make>
ConversionStage explain_failure(const std::string& what, const Make& make) {
    try {
        return make();
    } catch (const diagnostics::Failure& failure) {
        throw diagnostics::Failure(
            diagnostics::add_context(what, failure.get_diagnostics(), Code::CONVERSION_IMPOSSIBLE));
    }
}

ColorIOTransforms::Direction get_direction(bool is_inverse) {
    return is_inverse ? ColorIOTransforms::DIRECTION_INVERSE : ColorIOTransforms::DIRECTION_FORWARD;
}

std::string make_title(const ColorStep& step, const std::string& space) {
    return fmt::format("{}{} in {}", step.is_inverse ? "inverse of " : "", step.name, space);
}

/// The converter of a record that is listed nowhere. The module undoes the first CDL that it is given, and
/// applies the second.
bool configure_cdl(const std::string& name, bool is_undone, ColorIOConverter& converter) {
    const CoreString nothing = ColorIO::get_default_CDL_name();
    return is_undone ? converter.configure_CDL(name.c_str(), nothing)
                     : converter.configure_CDL(nothing, name.c_str());
}

bool is_published_cdl(const std::string& name) {
    const auto& names = ColorIOManager::get_instance()->get_CDL_names();
    return std::any_of(names.begin(), names.end(),
                       [&](const CoreString& known) { return known == name.c_str(); });
}

/// Whether a text that names no CDL and no file looks like the name of a CDL: it has no folder and no
/// extension.
bool could_be_cdl_name(const std::string& text) {
    return text.find_first_of("/.:") == std::string::npos;
}

/// FILE or FILE:ID; the error also says which published CDL may have been meant, and why that cannot be used.
Correction read_step_correction(const Session& session, const std::string& text) {
    try {
        return read_valid_correction(parse_correction_source(text));
    } catch (const diagnostics::Failure& failure) {
        if (failure.get_worst().code != Code::FILE_MISSING)
            throw;
        std::vector<std::string> names;
        for (const CoreString& name : ColorIOManager::get_instance()->get_CDL_names())
            names.emplace_back(name.view());
        const std::string near = did_you_mean(text, names);
        if (could_be_cdl_name(text))
            throw diagnostics::Failure(explain_missing(Code::CDL_UNKNOWN, fmt::format("no CDL '{}'", text),
                                                       text, session.get_custom_errors(), near));
        if (near.empty())
            throw;
        throw diagnostics::Failure(with_hint(failure.get_worst(), near));
    }
}

ConversionStage make_cdl_stage(const Session& session, const ColorStep& step, const std::string& space,
                               diagnostics::Diagnostics& notes) {
    const std::string what = fmt::format("cannot apply the CDL '{}'", step.name);
    if (ColorIO::get_default_CDL_name() == step.name.c_str())
        return {make_title(step, space), nullptr};
    if (is_published_cdl(step.name))
        return make_stage(make_title(step, space), what, [&](ColorIOConverter& converter) {
            return configure_cdl(step.name, step.is_inverse, converter);
        });
    const Correction correction = read_step_correction(session, step.name);
    add_correction_notes(correction, parse_correction_source(step.name).path, notes);
    const char* const local = step.is_inverse ? INPUT_LOCAL_CDL : OUTPUT_LOCAL_CDL;
    const auto record = make_cdl_record(correction, local);
    return make_stage(make_title(step, space), what, [&](ColorIOConverter& converter) {
        ColorIOManager::get_instance()->add_local_CDL(record);
        return configure_cdl(local, step.is_inverse, converter);
    });
}

std::string trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

/// A look of a list, and whether it is undone.
struct ListedLook {
    std::string name;
    bool is_inverse;
};

/// The looks of "film, -warm", each of them known to the config.
std::vector<ListedLook> parse_looks(const Session& session, const std::string& text) {
    std::vector<std::string> known;
    for (const CoreString& name : ColorIOInspection::get_looks())
        known.emplace_back(name.view());
    std::vector<ListedLook> looks;
    std::istringstream list(text);
    for (std::string item; std::getline(list, item, ',');) {
        std::string name = trim(item);
        const bool is_signed = !name.empty() && (name[0] == '-' || name[0] == '+');
        const bool is_inverse = is_signed && name[0] == '-';
        name = is_signed ? trim(name.substr(1)) : name;
        if (name.empty())
            diagnostics::fail(Code::USAGE, fmt::format("'{}' is not a list of looks", text),
                              "example: film, -warm");
        const auto found = std::find_if(known.begin(), known.end(), [&](const std::string& candidate) {
            return equal_ignoring_case(candidate, name);
        });
        if (found == known.end())
            throw diagnostics::Failure(with_hint(
                diagnostics::make_error(Code::LOOK_UNKNOWN,
                                        fmt::format("no look '{}' in {}", name, session.get_config_name()),
                                        name),
                did_you_mean(name, known)));
        looks.push_back({*found, is_inverse});
    }
    if (looks.empty())
        diagnostics::fail(Code::USAGE, "the list of looks is empty", "example: film, -warm");
    return looks;
}

/// The stage of a list such as "+film, -warm".
ConversionStage make_look_list_stage(std::string title, const std::string& list, const std::string& space) {
    return make_stage(std::move(title), "", [&](ColorIOConverter& converter) {
        return ColorIOTransforms::configure_looks(converter, remove_family(space).c_str(), list.c_str());
    });
}

ConversionStage make_look_stage(const Session& session, const ColorStep& step, const std::string& space) {
    std::vector<ListedLook> looks = parse_looks(session, step.name);
    if (step.is_inverse)
        std::reverse(looks.begin(), looks.end());
    std::string list;
    for (const ListedLook& look : looks)
        list += fmt::format("{}{}{}", list.empty() ? "" : ", ",
                            look.is_inverse != step.is_inverse ? "-" : "+", look.name);
    return explain_failure(fmt::format("cannot apply the looks '{}'", step.name),
                           [&] { return make_look_list_stage(make_title(step, space), list, space); });
}

ConversionStage make_named_transform_stage(const Session& session, const ColorStep& step) {
    const std::string name = resolve_named_transform(step.name, session.get_config_name());
    return explain_failure(fmt::format("cannot apply the named transform '{}'", name),
                           [&] { return workflow::make_named_transform_stage(name, step.is_inverse); });
}

ConversionStage make_lut_stage(const ColorStep& step) {
    if (const auto opened = files::open_for_reading(step.name); !opened)
        throw diagnostics::Failure(files::to_diagnostic(opened.get_failure()));
    const std::filesystem::path path = std::filesystem::absolute(step.name);
    return make_stage(fmt::format("{}LUT {}", step.is_inverse ? "inverse of " : "", step.name),
                      fmt::format("cannot apply the LUT '{}'", step.name), [&](ColorIOConverter& converter) {
                          return ColorIOTransforms::configure_file(converter, path.c_str(),
                                                                   get_direction(step.is_inverse));
                      });
}

} // namespace

ConversionStage make_named_transform_stage(const std::string& name, bool is_inverse) {
    return make_stage(fmt::format("{}named transform {}", is_inverse ? "inverse of " : "", name), "",
                      [&](ColorIOConverter& converter) {
                          return ColorIOTransforms::configure_named_transform(converter, name.c_str(),
                                                                              get_direction(is_inverse));
                      });
}

ConversionStage make_look_stage(const std::string& name, const std::string& space) {
    return make_look_list_stage(fmt::format("{} in {}", name, space), "+" + name, space);
}

ConversionStage make_space_stage(const std::string& from, const std::string& to) {
    const bool are_published =
        ColorIO::color_space_exists(from.c_str()) && ColorIO::color_space_exists(to.c_str());
    return make_stage(fmt::format("{} to {}", from, to), "", [&](ColorIOConverter& converter) {
        return are_published ? converter.configure(from.c_str(), to.c_str())
                             : ColorIOTransforms::configure(converter, remove_family(from).c_str(),
                                                            remove_family(to).c_str());
    });
}

ConversionStage make_space_stage(const Session& session, const std::string& from, const std::string& to) {
    return explain_failure(
        fmt::format("cannot convert from '{}' to '{}' with {}", from, to, session.get_config_name()),
        [&] { return make_space_stage(from, to); });
}

ConversionStage make_view_stage(const std::string& from, const PublishedView& view) {
    const char *const display = view.display.c_str(), *const name = view.view.c_str();
    return make_stage(fmt::format("{} to {}", from, view.label), "", [&](ColorIOConverter& converter) {
        return ColorIO::color_space_exists(from.c_str())
                   ? converter.configure_for_display(from.c_str(), display, name)
                   : ColorIOTransforms::configure_view(converter, remove_family(from).c_str(), display, name);
    });
}

ConversionStage make_view_stage(const Session& session, const std::string& from, const PublishedView& view) {
    return explain_failure(fmt::format("cannot convert from '{}' to the view '{}' with {}", from, view.label,
                                       session.get_config_name()),
                           [&] { return make_view_stage(from, view); });
}

ConversionStage make_inverse_view_stage(const Session& session, const PublishedView& view,
                                        const std::string& to) {
    const std::string what = fmt::format("cannot convert from the view '{}' to '{}' with {}", view.label, to,
                                         session.get_config_name());
    return make_stage(fmt::format("{} to {}", view.label, to), what, [&](ColorIOConverter& converter) {
        return ColorIOTransforms::configure_inverse_view(converter, view.display.c_str(), view.view.c_str(),
                                                         remove_family(to).c_str());
    });
}

ConversionStage make_step_stage(const Session& session, const ColorStep& step, const std::string& space,
                                diagnostics::Diagnostics& notes) {
    switch (step.kind) {
    case ColorStep::CDL:
        return make_cdl_stage(session, step, space, notes);
    case ColorStep::LOOKS:
        return make_look_stage(session, step, space);
    case ColorStep::NAMED_TRANSFORM:
        return make_named_transform_stage(session, step);
    case ColorStep::LUT:
        break;
    }
    return make_lut_stage(step);
}

} // namespace workflow
