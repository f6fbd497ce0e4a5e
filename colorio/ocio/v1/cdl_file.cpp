#include "colorio/ocio/cdl_file.h"

#include <fstream>
#include <iterator>
#include <unordered_set>

#include "colorio/ocio/error.h"
#include "colorio/ocio/v1/correction_texts.h"

namespace ocio {

namespace {

std::string read_text(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw_error(diagnostics::Code::FILE_UNREADABLE, "it cannot be opened");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Ids must differ within a file.
void require_unique_ids(const std::vector<CDLTransformRcPtr>& corrections) {
    std::unordered_set<std::string> ids;
    for (const CDLTransformRcPtr& correction : corrections) {
        const std::string id = correction->getID();
        if (!id.empty() && !ids.insert(id).second)
            throw_error(diagnostics::Code::CDL_ID_REPEATED,
                        "it contains two color corrections with the id '" + id + "'", id);
    }
}

std::vector<CDLTransformRcPtr> parse(const std::string& text) {
    std::vector<CDLTransformRcPtr> corrections;
    for (const std::string& correction : split_corrections(text)) {
        corrections.push_back(library::CDLTransform::Create());
        corrections.back()->setXML(correction.c_str());
    }
    require_unique_ids(corrections);
    return corrections;
}

} // namespace

// OpenColorIO's reader of files does not support decision lists, caches every file permanently, and does not
// report the count of corrections; its reader of single corrections is used instead.
std::vector<CDLTransformRcPtr> read_corrections(const std::string& path, bool) {
    try {
        return parse(read_text(path));
    } catch (const Exception& error) {
        diagnostics::Diagnostic cause = get_cause(error);
        if (cause.code == diagnostics::Code::LIBRARY_FAILURE)
            cause.code = diagnostics::Code::CDL_INVALID;
        cause.message = "no color corrections can be read from '" + path + "': " + error.what();
        cause.file = path;
        throw Error(std::move(cause));
    }
}

} // namespace ocio
