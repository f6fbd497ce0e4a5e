#include "workflow/output_colors.h"

#include <vector>

#include "colorio/color_io_inspection.h"
#include "workflow/color_identity.h"
#include "workflow/colorimetry.h"
#include "workflow/common_names.h"
#include "workflow/conversion.h"
#include "workflow/icc_profile.h"
#include "workflow/published_names.h"

namespace workflow {

namespace {

std::vector<std::string> get_names(const ColorIOInspection::ColorSpace& space, const std::string& label) {
    std::vector<std::string> names = {label, space.name.get_data()};
    for (const CoreString& alias : space.aliases)
        names.push_back(alias.get_data());
    return names;
}

std::string remove_namespace(const std::string& id) {
    return id.substr(id.find(':') + 1); // npos + 1 is 0
}

} // namespace

std::string find_interop_id(const std::string& label) {
    for (const ColorIOInspection::ColorSpace& space : ColorIOInspection::get_color_spaces()) {
        if (make_label(space.family.get_data(), space.name.get_data()) != label)
            continue;
        if (!space.interop_id.is_empty())
            return space.interop_id.get_data();
        for (const std::string& name : get_names(space, label))
            if (const char* const id = find_common_id(name))
                return id;
    }
    return "";
}

image::ColorDescription describe_output_colors(const Conversion& conversion) {
    image::ColorDescription colors;
    colors.name = conversion.get_destination_tag();
    const std::string& label = conversion.get_destination_space();
    const std::string full_id = label.empty() ? "" : find_interop_id(label);
    if (full_id.empty())
        return colors;
    if (full_id != FILM_SCAN_ID && full_id != CAMERA_REC709_ID)
        colors.interop_id = full_id;
    const std::string id = remove_image_state(remove_namespace(full_id));
    if (const std::array<double, 8>* const xy = get_chromaticities_of_linear(id))
        colors.chromaticities.assign(xy->begin(), xy->end());
    colors.cicp = get_code_points(id);
    colors.icc_profile = make_icc_profile(id);
    const DpxColors dpx = get_dpx_colors(id);
    colors.dpx_transfer = dpx.transfer;
    colors.dpx_colorimetric = dpx.colorimetric;
    return colors;
}

} // namespace workflow
