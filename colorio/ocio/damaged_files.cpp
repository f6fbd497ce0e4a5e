#include "colorio/ocio/damaged_files.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "colorio/ocio/config.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/profile_version.h"
#include "colorio/ocio/table_inverse.h"
#include "colorio/ocio/transform.h"
#include "diagnostics/failure.h"

namespace ocio {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

bool is_cdl_file(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".cc" || extension == ".ccc" || extension == ".cdl";
}

/// `words` are OpenColorIO's, quoted as they are: nothing is concluded from them.
Diagnostic describe_damage(const std::string& path, const std::string& words) {
    const std::string version = find_newer_transform_version(path);
    return diagnostics::make_file_error(
        Code::LUT_DAMAGED,
        "the file '" + path + "' is " +
            (version.empty() ? "damaged or of an unknown kind: " + diagnostics::flatten(words)
                             : "of version " + version + ", which needs a newer OpenColorIO"),
        path);
}

/// Why the color correction cannot be read from a CDL file; empty when it can.
std::optional<Diagnostic> find_cdl_damage(const std::string& path, const std::string& cccid) {
    try {
        create_CDL_transform_from_file(path.c_str(), cccid.c_str());
        return std::nullopt;
    } catch (const Exception& exception) {
        const Diagnostic cause = get_cause(exception);
        const bool is_about_id = cause.code == Code::CDL_ID_MISSING || cause.code == Code::CDL_ID_REPEATED;
        return is_about_id ? cause : describe_damage(path, cause.message);
    }
}

/// OpenColorIO's error for a file alone; empty when it can read it.
std::optional<Diagnostic> find_lut_damage(const std::string& path) {
    const std::optional<std::string> words = find_refusal(path, TRANSFORM_DIR_FORWARD);
    return words ? std::optional(describe_damage(path, *words)) : std::nullopt;
}

} // namespace

std::optional<std::string> find_refusal(const std::string& path, TransformDirection direction) {
    try {
        const library::FileTransformRcPtr file = library::FileTransform::Create();
        file->setSrc(path.c_str());
        file->setInterpolation(INTERP_LINEAR);
        file->setDirection(direction);
        require_invertible_tables(*create_config()->getProcessor(file));
        return std::nullopt;
    } catch (const std::exception& exception) {
        return exception.what();
    }
}

std::optional<Diagnostic> find_damaged_file(const ConstConfigRcPtr& config, const ConversionParts& parts) {
    for (const FileUse& use : parts.uses) {
        const std::string& path = parts.files.at(use.source);
        const std::optional<Diagnostic> damage =
            is_cdl_file(path) ? find_cdl_damage(path, resolve_variables(config, use.cccid))
                              : find_lut_damage(path);
        if (damage)
            return damage;
    }
    return std::nullopt;
}

} // namespace ocio
