#include "colorio/color_io_lut_writer.h"

#include <string>

#include "colorio/color_io_manager.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/lut_bake.h"

CoreString ColorIOLutWriter::write(const Bake& bake) {
    return at_boundary(CoreString(), [&] {
        const ColorIOManager* manager = ColorIOManager::get_instance();
        if (!manager || !manager->get_config())
            return CoreString();
        const ocio::LutBake wanted{bake.format.get_data(),
                                   bake.source.get_data(),
                                   bake.shaper.get_data(),
                                   bake.target.get_data(),
                                   {bake.grid.begin(), bake.grid.end()},
                                   bake.size,
                                   bake.shaper_size,
                                   {bake.curve.begin(), bake.curve.end()}};
        return CoreString(std::string_view(ocio::bake_lut(manager->get_config(), wanted)));
    });
}

bool ColorIOLutWriter::has_format(const CoreString& format) {
    return at_boundary(false, [&] { return ocio::can_bake(format.get_data()); });
}
