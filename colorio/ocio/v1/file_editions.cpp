#include "colorio/ocio/v1/file_editions.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <unordered_map>

#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "colorio/ocio/config_side.h"
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
        std::optional<FileState> state; ///< when it was last read anew
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
    const library::ConstContextRcPtr variables = get_variables(config);
    Spellings spellings;
    for (const auto& [source, path] : parts.files)
        if (const unsigned edition = file_editions().edition_of(path))
            spellings.emplace(source, spell_edition(variables->resolveStringVar(source.c_str()), edition));
    return spellings;
}

TransformRcPtr respell(const ConstTransformRcPtr& transform, const Spellings& spellings);

/// The members with edited files replaced.
void respell_members(const GroupTransformRcPtr& group, const Spellings& spellings) {
    std::vector<TransformRcPtr> members;
    for (int i = 0; i < get_size(*group); ++i)
        members.push_back(respell(group->getTransform(i), spellings));
    group->clear();
    for (const TransformRcPtr& member : members)
        push_back(group, member);
}

/// A copy that asks for edited files anew; null for null. Groups are as deep as a checked conversion may
/// nest.
TransformRcPtr respell(const ConstTransformRcPtr& transform, const Spellings& spellings) {
    if (!transform)
        return {};
    const TransformRcPtr copy = transform->createEditableCopy();
    if (const auto file = library::DynamicPtrCast<library::FileTransform>(copy)) {
        const auto found = spellings.find(file->getSrc());
        if (found != spellings.end())
            set_src(file, found->second.c_str());
    } else if (const auto group = library::DynamicPtrCast<library::GroupTransform>(copy)) {
        respell_members(group, spellings);
    }
    return copy;
}

void respell_space(const ConfigRcPtr& config, const std::string& name, const Spellings& spellings) {
    const library::ColorSpaceRcPtr space = config->getColorSpace(name.c_str())->createEditableCopy();
    for (const auto direction : {COLORSPACE_DIR_TO_REFERENCE, COLORSPACE_DIR_FROM_REFERENCE})
        set_transform(space, respell(get_transform(space, direction), spellings), direction);
    config->addColorSpace(space);
}

void respell_look(const ConfigRcPtr& config, const std::string& name, const Spellings& spellings) {
    const library::LookRcPtr look = config->getLook(name.c_str())->createEditableCopy();
    // The library takes no null here.
    if (const TransformRcPtr transform = respell(look->getTransform(), spellings))
        look->setTransform(transform);
    if (const TransformRcPtr inverse = respell(look->getInverseTransform(), spellings))
        look->setInverseTransform(inverse);
    config->addLook(look);
}

} // namespace

void forget_file_editions() {
    file_editions().forget();
}

Conversion with_current_editions(const Conversion& conversion, const ConversionParts& parts) {
    const Spellings spellings = current_spellings(conversion.config, parts);
    if (spellings.empty())
        return conversion;
    const ConfigRcPtr copy = create_editable_copy(conversion.config);
    for (const GraphNode& node : parts.nodes)
        if (node.kind == NodeKind::COLOR_SPACE)
            respell_space(copy, node.name, spellings);
        else
            respell_look(copy, node.name, spellings);
    return {copy, respell(conversion.transform, spellings)};
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
