#include "colorio/ocio/v1/file_editions.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <unordered_map>

#include "colorio/ocio/config.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/file_state.h"
#include "colorio/ocio/transform.h"

namespace ocio {

namespace {

/// How often each file was found changed.
class FileEditions {
public:
    /// The edition that a processor has to read which is made now.
    unsigned edition_of(const std::string& path) {
        const std::lock_guard lock(mutex_);
        const std::optional<FileState> state = file_state(path);
        const auto [known, is_new] = files_.try_emplace(path, Entry{state, 0, period_});
        Entry& entry = known->second;
        if (is_new || entry.period == period_)
            return entry.edition;
        if (!entry.state || !is_unchanged(*entry.state, state))
            entry = {state, entry.edition + 1, period_};
        return entry.edition;
    }

    void forget() {
        const std::lock_guard lock(mutex_);
        ++period_;
    }

private:
    struct Entry {
        std::optional<FileState> state; ///< when it was last read again
        unsigned edition;
        unsigned long period; ///< in which that was
    };

    std::mutex mutex_;
    std::unordered_map<std::string, Entry> files_;
    unsigned long period_ = 0;
};

FileEditions& file_editions() {
    static FileEditions editions;
    return editions;
}

/// Sources of file transforms, and what edited files are to be asked for instead.
using Spellings = std::map<std::string, std::string>;

Spellings current_spellings(const ConstConfigRcPtr& config, const ConversionParts& parts) {
    Spellings spellings;
    for (const auto& [source, path] : parts.files)
        if (const unsigned edition = file_editions().edition_of(path))
            spellings.emplace(source, spell_edition(resolve_variables(config, source), edition));
    return spellings;
}

} // namespace

void forget_file_editions() {
    file_editions().forget();
}

Conversion with_current_editions(const Conversion& conversion, const ConversionParts& parts) {
    const Spellings spellings = current_spellings(conversion.config, parts);
    if (spellings.empty())
        return conversion;
    const auto respell = [&](const TransformRcPtr& transform) {
        const auto file = library::DynamicPtrCast<library::FileTransform>(transform);
        const auto found = file ? spellings.find(file->getSrc()) : spellings.end();
        if (found != spellings.end())
            set_src(file, found->second.c_str());
    };
    return rewrite_conversion(create_editable_copy(conversion.config), conversion.transform, parts.nodes,
                              respell);
}

std::string spell_edition(const std::string& path, unsigned edition) {
    // The number's binary digits, as folders that lead nowhere else.
    std::string detour;
    for (; edition > 0; edition /= 2)
        detour += edition % 2 == 0 ? "./" : ".//";
    std::string spelled = path;
    return spelled.insert(path.rfind('/') + 1, detour);
}

} // namespace ocio
