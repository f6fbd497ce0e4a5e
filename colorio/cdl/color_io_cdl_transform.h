#pragma once

#include <string>
#include <unordered_map>

#include "colorio/color_io_manager.h"
#include "colorio/ocio/transform.h"
#include "host/core/core_string.h"

/// The transform of a record's numbers; its id is the record's name.
ocio::CDLTransformRcPtr make_CDL_transform(const ColorIOManager::ColorDecisionListDef& def);

/// How to treat a collection whose only error is a repeated id.
enum class RepeatedIds {
    FIRST_COUNTS, ///< Use the first correction of each id.
    REFUSED,      ///< Throw OpenColorIO's exception for every correction in it.
};

/// Reads corrections of .cc, .ccc and .cdl files as OpenColorIO does, each file only once: by id in
/// files with exactly the extension "ccc", without an id in all others. Throws OpenColorIO's exception; a
/// collection that repeats an id, which OpenColorIO refuses as a whole, is treated as `repeated_ids` says.
class CDLFileReader {
public:
    explicit CDLFileReader(RepeatedIds repeated_ids) : repeated_ids(repeated_ids) {}

    /// Whether the file exists; asked only once per file.
    bool exists(const CoreString& file);
    ocio::CDLTransformRcPtr read(const CoreString& file, const CoreString& cccid);

private:
    struct Collection {
        std::unordered_map<std::string, ocio::CDLTransformRcPtr> by_id;
        /// The first correction of a collection that repeats an id; null for every other file.
        ocio::CDLTransformRcPtr first_of_repeating;

        void read_with_library(const CoreString& file);
        void read_repeating(const CoreString& file);
    };

    const Collection& get_collection(const CoreString& file);

    RepeatedIds repeated_ids;
    std::unordered_map<std::string, bool> existing;
    std::unordered_map<std::string, Collection> collections;
};
