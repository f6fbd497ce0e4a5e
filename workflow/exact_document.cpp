#include "workflow/exact_document.h"

#include <fmt/format.h>

#include "colorio/color_io_cdl_writer.h"
#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"
#include "workflow/text_file.h"

namespace workflow {

void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    CoreVector<ColorIOManager::ColorDecisionListDef> records;
    for (const Correction& correction : corrections)
        records.append(make_cdl_record(correction, correction.id));
    ColorIODiagnostics collector;
    const CoreString document = ColorIOCdlWriter::write(records, is_collection);
    if (document.is_empty())
        throw diagnostics::Failure(add_context(fmt::format("cannot write '{}'", path), collector.take(),
                                               diagnostics::Code::CDL_INVALID));
    write_text_file(path, document.get_data());
}

} // namespace workflow
