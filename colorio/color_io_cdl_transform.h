#pragma once

#include <string>
#include <unordered_map>

#include "colorio/ocio/transform.h"
#include "host/core/core_string.h"

/// `cccid` where the colour library is to look a correction up by id: in files of the extension "ccc"
/// exactly. Empty for every other file.
CoreString get_lookup_id(const CoreString& file, const CoreString& cccid);

/// The correction of a .cc, .ccc or .cdl file, as the colour library reads it. Throws its exception.
ocio::CDLTransformRcPtr read_CDL_transform(const CoreString& file, const CoreString& cccid);

/// Finds corrections of collection files by id and reads each file only once.
class CDLFileReader {
public:
    /// Whether the file exists; asked only once per file.
    bool exists(const CoreString& file);
    /// The same answers and exceptions as `read_CDL_transform`.
    ocio::CDLTransformRcPtr read(const CoreString& file, const CoreString& cccid);

private:
    using Corrections = std::unordered_map<std::string, ocio::CDLTransformRcPtr>;

    const Corrections& get_corrections(const CoreString& file);

    std::unordered_map<std::string, bool> existing;
    std::unordered_map<std::string, Corrections> files;
};
