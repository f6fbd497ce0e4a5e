#include "colorio/color_io_cdl_writer.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/cdl_document.h"

namespace {

/// The double with the same shortest text: 1.2 for 1.2f, whose exact value is 1.2000000476837158.
double shorten(float value) {
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double result = 0.0;
    std::from_chars(text, end, result);
    return result;
}

ocio::CdlNumbers to_numbers(const ColorIOManager::ColorDecisionListDef& record) {
    ocio::CdlNumbers numbers;
    numbers.id = record.name.get_data();
    std::transform(record.slope, record.slope + 3, numbers.slope, shorten);
    std::transform(record.offset, record.offset + 3, numbers.offset, shorten);
    std::transform(record.power, record.power + 3, numbers.power, shorten);
    numbers.saturation = shorten(record.saturation);
    return numbers;
}

} // namespace

CoreString ColorIOCdlWriter::write(const CoreVector<ColorIOManager::ColorDecisionListDef>& records,
                                   bool is_collection) {
    return at_boundary(CoreString(), [&] {
        std::vector<ocio::CdlNumbers> numbers;
        std::transform(records.begin(), records.end(), std::back_inserter(numbers), to_numbers);
        return CoreString(std::string_view(ocio::write_cdl_document(numbers, is_collection)));
    });
}
