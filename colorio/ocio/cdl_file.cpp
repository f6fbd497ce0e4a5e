#include "colorio/ocio/cdl_file.h"

#include <charconv>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "colorio/ocio/error.h"
#include "colorio/ocio/file_state.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/lut_words.h"
#include "colorio/ocio/xml_root.h"

namespace ocio {

namespace {

/// A file of corrections, or the reason why it could not be read.
struct CdlFile {
    std::optional<FileState> state;
    std::optional<diagnostics::Diagnostic> failure;
    std::string words;   ///< of the failure, for the log
    bool single = false; ///< one correction on its own, not a collection of one
    std::vector<CDLTransformRcPtr> corrections;
    std::unordered_map<std::string, std::size_t> by_id; ///< the first of that id
};

using ConstCdlFileRcPtr = std::shared_ptr<const CdlFile>;

CDLTransformRcPtr own_copy(const CDLTransformRcPtr& transform) {
    return library::DynamicPtrCast<library::CDLTransform>(transform->createEditableCopy());
}

/// The files read so far. OpenColorIO remembers them too, failures included, until its caches are cleared,
/// and searches them from the start for every correction; here an edited file is read again and an id found
/// at once.
class CdlFiles {
public:
    /// Throws when the file cannot be read.
    ConstCdlFileRcPtr get(const std::string& path) {
        const std::lock_guard lock(mutex_);
        const auto known = files_.find(path);
        ConstCdlFileRcPtr file;
        if (known != files_.end() && known->second->state &&
            is_unchanged(*known->second->state, file_state(path)))
            file = known->second;
        else
            file = files_[path] = read(path, known != files_.end());
        if (file->failure)
            throw Error(*file->failure, file->words.c_str());
        return file;
    }

    void forget() {
        const std::lock_guard lock(mutex_);
        files_.clear();
    }

private:
    static ConstCdlFileRcPtr read(const std::string& path, bool again) {
        const auto file = std::make_shared<CdlFile>();
        try {
            file->state = file_state(path);
            require_readable_lut(path);
            file->corrections = read_corrections(path, again);
            file->single = xml_root_name(path) == "ColorCorrection";
            for (std::size_t i = 0; i < file->corrections.size(); ++i)
                file->by_id.emplace(file->corrections[i]->getID(), i);
        } catch (const Exception& error) {
            file->failure = get_cause(error);
            file->words = error.what();
            file->failure->file = path;
            if (file->failure->code == diagnostics::Code::LIBRARY_FAILURE)
                file->failure->code = diagnostics::Code::CDL_INVALID;
        }
        return file;
    }

    std::mutex mutex_;
    std::map<std::string, ConstCdlFileRcPtr> files_;
};

CdlFiles& cdl_files() {
    static CdlFiles files;
    return files;
}

[[noreturn]] void fail_missing_correction(const char* path, const char* cccid, std::size_t count) {
    diagnostics::Diagnostic cause =
        diagnostics::make_file_error(diagnostics::Code::CDL_ID_MISSING,
                                     "no color correction '" + std::string(cccid) + "' among the " +
                                         std::to_string(count) + " of '" + path + "'",
                                     path);
    cause.subject = cccid;
    throw Error(std::move(cause));
}

/// Position of the correction that `cccid` names: an id, or else a position.
std::optional<std::size_t> find_correction(const CdlFile& file, const std::string& cccid) {
    if (file.corrections.empty())
        return std::nullopt;
    if (file.single || cccid.empty())
        return 0;
    const auto found = file.by_id.find(cccid);
    if (found != file.by_id.end())
        return found->second;
    std::size_t position = 0;
    const char* end = cccid.data() + cccid.size();
    const auto parsed = std::from_chars(cccid.data(), end, position);
    const bool is_position = parsed.ec == std::errc() && parsed.ptr == end;
    return is_position && position < file.corrections.size() ? std::optional(position) : std::nullopt;
}

} // namespace

void forget_cdl_files() {
    cdl_files().forget();
}

CDLTransformRcPtr create_CDL_transform_from_file(const char* path, const char* cccid) {
    return guarded([&] {
        const ConstCdlFileRcPtr file = cdl_files().get(path);
        const std::optional<std::size_t> position = find_correction(*file, cccid);
        if (!position)
            fail_missing_correction(path, cccid, file->corrections.size());
        return own_copy(file->corrections[*position]);
    });
}

std::vector<CDLTransformRcPtr> create_CDL_transforms_from_file(const char* path) {
    return guarded([&] {
        std::vector<CDLTransformRcPtr> copies;
        for (const CDLTransformRcPtr& correction : cdl_files().get(path)->corrections)
            copies.push_back(own_copy(correction));
        return copies;
    });
}

} // namespace ocio
