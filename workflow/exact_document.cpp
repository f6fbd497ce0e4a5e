#include "workflow/exact_document.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "colorio/color_io_cdl_writer.h"
#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"
#include "workflow/correction_text.h"
#include "workflow/text_file.h"

namespace workflow {

namespace {

ColorIOCdlWriter::Correction make_numbers(const Correction& correction) {
    ColorIOCdlWriter::Correction numbers;
    numbers.id = correction.id.c_str();
    std::transform(std::begin(correction.slope), std::end(correction.slope), numbers.slope, shorten);
    std::transform(std::begin(correction.offset), std::end(correction.offset), numbers.offset, shorten);
    std::transform(std::begin(correction.power), std::end(correction.power), numbers.power, shorten);
    numbers.saturation = shorten(correction.saturation);
    return numbers;
}

} // namespace

void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    CoreVector<ColorIOCdlWriter::Correction> numbers;
    for (const Correction& correction : corrections)
        numbers.append(make_numbers(correction));
    ColorIODiagnostics collector;
    const CoreString document = ColorIOCdlWriter::write(numbers, is_collection);
    if (document.is_empty())
        throw diagnostics::Failure(add_context(fmt::format("cannot write '{}'", path), collector.take(),
                                               diagnostics::Code::CDL_INVALID));
    write_text_file(path, document.get_data());
}

} // namespace workflow
