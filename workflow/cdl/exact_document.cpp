#include "workflow/cdl/exact_document.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include <fmt/format.h>

#include "colorio/ocio/cdl_document.h"
#include "image/output_file.h"
#include "image/replaced_file.h"
#include "tool/cdl/correction_text.h"
#include "tool/exit_code.h"

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

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw CommandError(fmt::format("cannot write '{}': {}", path, reason));
}

std::string make_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    std::vector<ocio::CdlNumbers> numbers;
    std::transform(corrections.begin(), corrections.end(), std::back_inserter(numbers), make_numbers);
    try {
        return ocio::write_cdl_document(numbers, is_collection);
    } catch (const std::exception& error) {
        fail(path, error.what());
    }
}

} // namespace

void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    const std::string document = make_document(path, corrections, is_collection);
    ReplacedFile replaced(path);
    OutputFile file(replaced.get_temporary_path());
    file.write(document.data(), document.size());
    const std::string failure = file.finish();
    if (!failure.empty())
        fail(path, failure);
    replaced.commit();
}

} // namespace tool
