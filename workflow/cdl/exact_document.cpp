#include "workflow/cdl/exact_document.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include <fmt/format.h>

#include "colorio/ocio/cdl_document.h"
#include "tool/cdl/correction_text.h"
#include "tool/exit_code.h"
#include "workflow/text_file.h"

namespace tool {

namespace {

ocio::CdlNumbers make_numbers(const Correction& correction) {
    ocio::CdlNumbers numbers;
    numbers.id = correction.id;
    std::transform(std::begin(correction.slope), std::end(correction.slope), numbers.slope, shorten);
    std::transform(std::begin(correction.offset), std::end(correction.offset), numbers.offset, shorten);
    std::transform(std::begin(correction.power), std::end(correction.power), numbers.power, shorten);
    numbers.saturation = shorten(correction.saturation);
    return numbers;
}

std::string make_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    std::vector<ocio::CdlNumbers> numbers;
    std::transform(corrections.begin(), corrections.end(), std::back_inserter(numbers), make_numbers);
    try {
        return ocio::write_cdl_document(numbers, is_collection);
    } catch (const std::exception& error) {
        throw CommandError(fmt::format("cannot write '{}': {}", path, error.what()));
    }
}

} // namespace

void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    write_text_file(path, make_document(path, corrections, is_collection));
}

} // namespace tool
