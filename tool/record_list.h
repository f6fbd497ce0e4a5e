#pragma once

#include <string>
#include <vector>

#include <fmt/format.h>

#include "host/core/core_vector.h"
#include "tool/exit_code.h"
#include "workflow/nearest_names.h"

namespace tool {

/// The records without the custom one of that name. Throws diagnostics::Failure with the nearest names when
/// there is none; `kind` names the kind of record in the message.
template <class Record>
CoreVector<Record> remove_record(const CoreVector<Record>& records, const std::string& name,
                                 const char* kind) {
    CoreVector<Record> left;
    std::vector<std::string> names;
    for (const Record& record : records) {
        if (!record.is_builtin)
            names.emplace_back(record.name.view());
        if (record.is_builtin || record.name != name.c_str())
            left.append(record);
    }
    if (left.get_count() == records.get_count())
        diagnostics::fail(diagnostics::Code::USAGE_REFUSED, fmt::format("no custom {} '{}'", kind, name),
                          workflow::did_you_mean(name, names));
    return left;
}

} // namespace tool
