#include "workflow/rounded_document.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "colorio/color_io_cdl_writer.h"
#include "diagnostics/file_failure.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"
#include "workflow/module_call.h"

namespace workflow {

namespace {

using diagnostics::Code;

/// The largest change of a number by rounding.
struct Loss {
    float amount = 0.0f;
    float wanted = 0.0f;
    float written = 0.0f;
    std::string place;
};

float round_number(float value) {
    return parse_number(fmt::format("{:.1f}", value)).value();
}

/// The color correction with its numbers rounded to one decimal.
Correction round_numbers(Correction correction) {
    for (float* values : {correction.slope, correction.offset, correction.power})
        std::transform(values, values + 3, values, round_number);
    correction.saturation = round_number(correction.saturation);
    return correction;
}

void compare(const Correction& correction, const char* name, const float* wanted, const float* written,
             std::size_t count, Loss& largest) {
    for (std::size_t i = 0; i < count; ++i) {
        const float amount = std::fabs(wanted[i] - written[i]);
        if (amount > largest.amount)
            largest = {amount, wanted[i], written[i], fmt::format("{} of '{}'", name, correction.id)};
    }
}

Loss find_largest_loss(const std::vector<Correction>& wanted, const std::vector<Correction>& written) {
    Loss largest;
    for (std::size_t i = 0; i < std::min(wanted.size(), written.size()); ++i) {
        const Correction& a = wanted[i];
        const Correction& b = written[i];
        compare(a, "slope", a.slope, b.slope, std::size(a.slope), largest);
        compare(a, "offset", a.offset, b.offset, std::size(a.offset), largest);
        compare(a, "power", a.power, b.power, std::size(a.power), largest);
        compare(a, "saturation", &a.saturation, &b.saturation, 1, largest);
    }
    return largest;
}

} // namespace

diagnostics::Diagnostics write_rounded_document(const std::string& path,
                                                const std::vector<Correction>& corrections,
                                                bool is_collection) {
    CoreVector<ColorIOManager::ColorDecisionListDef> records;
    for (const Correction& correction : corrections) {
        const std::string problem = find_invalid_number(round_numbers(correction));
        if (!problem.empty())
            diagnostics::fail_to_write(Code::CDL_INVALID, path,
                                       fmt::format("with one decimal, {} in '{}'", problem, correction.id));
        records.append(make_cdl_record(correction, correction.id));
    }
    require_success("", Code::FILE_UNWRITABLE,
                    [&] { return ColorIOCdlWriter::write_rounded(records, path.c_str(), is_collection); });
    const Loss loss = find_largest_loss(corrections, read_corrections(path));
    if (loss.amount == 0.0f)
        return {};
    return {diagnostics::make_file_warning(
        Code::CDL_ROUNDED,
        fmt::format("numbers are written with one decimal: the largest change is {:.3g}, {} ({} became {})",
                    loss.amount, loss.place, loss.wanted, loss.written),
        path)};
}

} // namespace workflow
