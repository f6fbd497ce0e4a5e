#include "workflow/exact_document.h"

#include <fmt/format.h>

#include "colorio/color_io_cdl_writer.h"
#include "workflow/module_call.h"
#include "workflow/text_file.h"

namespace workflow {

void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    CoreVector<ColorIOManager::ColorDecisionListDef> records;
    for (const Correction& correction : corrections)
        records.append(make_cdl_record(correction, correction.id));
    CoreString document;
    require_success(fmt::format("cannot write '{}'", path), diagnostics::Code::CDL_INVALID, [&] {
        document = ColorIOCdlWriter::write(records, is_collection);
        return !document.is_empty();
    });
    write_text_file(path, document.get_data());
}

} // namespace workflow
