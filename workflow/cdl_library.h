#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "diagnostics/diagnostic.h"

class ProcessFolder;

namespace workflow {

/// Why the file at `path` cannot be used as a CDL library; empty when it can. Any file is usable of which
/// `read_corrections` reads a color correction with valid numbers.
std::optional<diagnostics::Diagnostic> check_cdl_library(const std::string& path);

/// The file of color corrections that the module publishes as CDLs. The module reads flat collections with
/// the extension "ccc" that use OpenColorIO's element names. Of any other file, it is given an exact copy in
/// that form, in a temporary folder that is removed with this object; users see the path of the original.
class CdlLibrary {
public:
    /// Where the numbers of a CDL come from.
    struct Origin {
        std::string file;
        std::string id; ///< Empty for a color correction without an id.
    };

    CdlLibrary();
    ~CdlLibrary();
    CdlLibrary(const CdlLibrary&) = delete;
    CdlLibrary& operator=(const CdlLibrary&) = delete;

    /// Reads the file at `path`, and writes the copy if one is needed. An unusable file changes nothing; the
    /// result says why. A color correction without an id is named after the file, and those with invalid
    /// numbers or the name of an earlier one are left out; `get_warnings` lists them.
    std::optional<diagnostics::Diagnostic> load(const std::string& path);

    /// Path of the file that the module is given.
    const std::string& get_module_path() const { return module_path; }
    /// Color corrections that are not published, one warning for each.
    const diagnostics::Diagnostics& get_warnings() const { return warnings; }

    /// The origin of a CDL that the module has read from `file` with this id.
    Origin find_origin(const std::string& file, const std::string& id) const;
    /// The same diagnostics; those about the copy name the original.
    diagnostics::Diagnostics name_original(diagnostics::Diagnostics reports) const;

private:
    std::string make_copy_path(const std::string& path);

    std::unique_ptr<ProcessFolder> folder; ///< Null until a copy is needed.
    std::string original;                  ///< The library's path.
    std::string copy;                      ///< The last copy's path, or empty.
    std::string module_path;
    std::set<std::string> given_names; ///< Of the copied color corrections without an id.
    diagnostics::Diagnostics warnings;
};

} // namespace workflow
