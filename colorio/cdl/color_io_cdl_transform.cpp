#include "colorio/cdl/color_io_cdl_transform.h"

#include <set>

#include "colorio/cdl/cdl_document.h"
#include "colorio/ocio/error.h"
#include "host/sys/sys_filesystem.h"

namespace {

CoreString get_lookup_id(const CoreString& file, const CoreString& cccid) {
    return SysFilesystem::get_file_extension(file) == "ccc" ? cccid : CoreString();
}

/// The id that two corrections of the document have; empty for none.
std::string find_repeated_id(const XmlNode& top) {
    std::set<std::string> ids;
    int index = 0;
    for (XmlNode node = top.get_child("ColorCorrection", &index); !node.is_empty();
         node = top.get_child("ColorCorrection", &index)) {
        const std::string id(get_correction_id(node).view());
        if (!id.empty() && !ids.insert(id).second)
            return id;
    }
    return {};
}

/// Why OpenColorIO cannot read the file, looked for in the file itself where it gives only words.
diagnostics::Diagnostic explain_failure(const CoreString& file, const ocio::Exception& exception) {
    using diagnostics::Code;
    diagnostics::Diagnostic cause = ocio::get_cause(exception);
    if (cause.code != Code::CDL_INVALID)
        return cause;
    XmlResults results;
    const XmlNode top = XmlNode::parse_file_as_guessed(file.get_data(), nullptr, &results);
    if (results.error != XmlError::NONE)
        return describe_malformed(file, results);
    const std::string repeated = find_repeated_id(get_document_element(top));
    if (!repeated.empty()) {
        cause.code = Code::CDL_ID_REPEATED;
        cause.subject = repeated;
    }
    return cause;
}

} // namespace

ocio::CDLTransformRcPtr make_CDL_transform(const ColorIOManager::ColorDecisionListDef& def) {
    ocio::CDLTransformRcPtr transform = ocio::create_CDL_transform();
    ocio::set_id(transform, def.name.get_data());
    ocio::set_slope(transform, def.slope);
    ocio::set_offset(transform, def.offset);
    ocio::set_power(transform, def.power);
    ocio::set_sat(transform, def.saturation);
    return transform;
}

bool CDLFileReader::exists(const CoreString& file) {
    const auto [position, is_new] = existing.try_emplace(file.get_data());
    if (is_new)
        position->second = SysFilesystem::file_exists(file);
    return position->second;
}

ocio::CDLTransformRcPtr CDLFileReader::read(const CoreString& file, const CoreString& cccid) {
    const CoreString id = get_lookup_id(file, cccid);
    if (!id.is_empty()) {
        const auto& by_id = get_collection(file).by_id;
        const auto found = by_id.find(id.get_data());
        if (found != by_id.end())
            return found->second;
    }
    try {
        return ocio::create_CDL_transform_from_file(file.get_data(), id.get_data());
    } catch (const ocio::Exception& exception) {
        const ocio::CDLTransformRcPtr first = get_collection(file).first_of_repeating;
        if (id.is_empty() && first)
            return first;
        throw ocio::Error(explain_failure(file, exception), exception.what());
    }
}

const CDLFileReader::Collection& CDLFileReader::get_collection(const CoreString& file) {
    const auto [position, is_new] = collections.try_emplace(file.get_data());
    if (is_new) {
        try {
            position->second.read_with_library(file);
        } catch (const ocio::Exception&) {
            // Looking up the correction alone gives the error message, unless repeated ids were the only
            // error.
            if (repeated_ids == RepeatedIds::FIRST_COUNTS)
                position->second.read_repeating(file);
        }
    }
    return position->second;
}

void CDLFileReader::Collection::read_with_library(const CoreString& file) {
    for (const ocio::CDLTransformRcPtr& transform : ocio::create_CDL_transforms_from_file(file.get_data()))
        by_id.emplace(ocio::get_id(transform), transform);
}

void CDLFileReader::Collection::read_repeating(const CoreString& file) {
    const XmlNode top = get_document_element(XmlNode::parse_file(file.get_data()));
    bool repeats = false;
    bool valid = true;
    int index = 0;
    for (XmlNode node = top.get_child("ColorCorrection", &index); !node.is_empty();
         node = top.get_child("ColorCorrection", &index)) {
        valid = is_valid_correction(node);
        if (!valid)
            break;
        ColorIOManager::ColorDecisionListDef def = make_identity_CDL();
        def.name = get_correction_id(node);
        read_color_correction(node, file, MissingElement::GIVE_UP, def);
        const ocio::CDLTransformRcPtr transform = make_CDL_transform(def);
        repeats = !by_id.emplace(def.name.view(), transform).second || repeats;
        if (!first_of_repeating)
            first_of_repeating = transform;
    }
    if (!repeats || !valid) {
        by_id.clear();
        first_of_repeating.reset();
    }
}
