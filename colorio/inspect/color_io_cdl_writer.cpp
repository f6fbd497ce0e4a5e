#include "colorio/color_io_cdl_writer.h"

#include <algorithm>
#include <vector>

#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/cdl_document.h"

CoreString ColorIOCdlWriter::write(const CoreVector<Correction>& corrections, bool is_collection) {
    return at_boundary(CoreString(), [&] {
        std::vector<ocio::CdlNumbers> numbers;
        for (const Correction& correction : corrections) {
            ocio::CdlNumbers& one = numbers.emplace_back();
            one.id = correction.id.get_data();
            std::copy_n(correction.slope, 3, one.slope);
            std::copy_n(correction.offset, 3, one.offset);
            std::copy_n(correction.power, 3, one.power);
            one.saturation = correction.saturation;
        }
        return CoreString(std::string_view(ocio::write_cdl_document(numbers, is_collection)));
    });
}
