#include "colorio/color_io_cdl_transform.h"

#include "host/sys/sys_filesystem.h"

CoreString get_lookup_id(const CoreString& file, const CoreString& cccid) {
    return SysFilesystem::get_file_extension(file) == "ccc" ? cccid : CoreString();
}

ocio::CDLTransformRcPtr read_CDL_transform(const CoreString& file, const CoreString& cccid) {
    return ocio::create_CDL_transform_from_file(file.get_data(), get_lookup_id(file, cccid).get_data());
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
        const Corrections& corrections = get_corrections(file);
        const auto found = corrections.find(id.get_data());
        if (found != corrections.end())
            return found->second;
    }
    return ocio::create_CDL_transform_from_file(file.get_data(), id.get_data());
}

const CDLFileReader::Corrections& CDLFileReader::get_corrections(const CoreString& file) {
    const auto [position, is_new] = files.try_emplace(file.get_data());
    if (is_new) {
        try {
            for (const ocio::CDLTransformRcPtr& transform :
                 ocio::create_CDL_transforms_from_file(file.get_data()))
                position->second.emplace(ocio::get_id(transform), transform);
        } catch (const ocio::Exception&) {
            // The look-up one by one that follows words the error for the correction that was asked for.
        }
    }
    return position->second;
}
