#include "workflow/cdl/grade.h"

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_converter.h"
#include "workflow/cdl/correction_file.h"
#include "workflow/name_resolution.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char SCENE_LINEAR_ROLE[] = "scene_linear";

/// The converter of a record that is listed nowhere. The module undoes the first CDL that it is given, and
/// applies the second.
bool configure_local(const ColorIOManager::ColorDecisionListDef& record, bool is_undone,
                     ColorIOConverter& converter) {
    ColorIOManager::get_instance()->add_local_CDL(record);
    const CoreString nothing = ColorIO::get_default_CDL_name();
    return is_undone ? converter.configure_CDL(record.name, nothing)
                     : converter.configure_CDL(nothing, record.name);
}

} // namespace

Grade::Grade(ColorSession& session, const std::string& source, const std::string& correction_source,
             bool is_undone)
    : working_space(resolve_color_space(SCENE_LINEAR_ROLE, session.get_source().get_name()).label),
      correction(std::make_unique<ColorIOConverter>()) {
    const Correction numbers = read_valid_correction(parse_correction_source(correction_source));
    warn_of_unread_elements(numbers, session.get_console());
    const auto record = make_cdl_record(numbers, is_undone ? INPUT_LOCAL_CDL : OUTPUT_LOCAL_CDL);
    session.take_messages();
    if (source != working_space) {
        to_working_space = std::make_unique<ColorIOConverter>();
        if (!to_working_space->configure(source.c_str(), working_space.c_str()))
            throw CommandError(fmt::format("cannot grade: '{}' does not lead to '{}': {}", source,
                                           working_space, explain_failure(session.take_messages())));
    }
    if (!configure_local(record, is_undone, *correction))
        throw CommandError(fmt::format("cannot grade with '{}': {}", correction_source,
                                       explain_failure(session.take_messages())));
}

Grade::~Grade() = default;

void Grade::apply(float* rgba, unsigned int width, unsigned int height) const {
    if (to_working_space)
        to_working_space->convert_buffer(rgba, width, height, 4);
    correction->convert_buffer(rgba, width, height, 4);
}

} // namespace tool
