#include "diagnostics/code.h"

#include <iterator>

namespace diagnostics {

namespace {

constexpr CodeInfo CODES[] = {
    {Code::FILE_MISSING, "file-missing", "A file that was named does not exist."},
    {Code::FILE_NOT_REGULAR, "file-not-regular",
     "A path leads to a folder, a pipe or a device instead of a file."},
    {Code::FILE_UNREADABLE, "file-unreadable", "A file exists and cannot be read."},
    {Code::FILE_UNWRITABLE, "file-unwritable",
     "A file cannot be written; what was there before is unchanged."},
    {Code::FILE_TOO_LARGE, "file-too-large", "A file is larger than files of its kind may be."},
    {Code::CONFIG_MISSING, "config-missing", "The OCIO config that was named does not exist."},
    {Code::CONFIG_INVALID, "config-invalid", "An OCIO config cannot be parsed, or fails its check."},
    {Code::CONFIG_NEWER, "config-newer", "An OCIO config has a version that this OpenColorIO cannot read."},
    {Code::CONFIG_CYCLE, "config-cycle", "Transforms of an OCIO config refer to each other in a circle."},
    {Code::CONFIG_TOO_COMPLEX, "config-too-complex",
     "An OCIO config nests or repeats transforms beyond a bound."},
    {Code::CONFIG_VARIABLE, "config-variable",
     "A context variable is unset, refers to itself, or grows without bound."},
    {Code::CONFIG_BUILTIN, "config-builtin", "The built-in config or its CDLs cannot be made."},
    {Code::LUT_MISSING, "lut-missing", "A LUT or CDL file that a transform names is not found."},
    {Code::LUT_DAMAGED, "lut-damaged", "A LUT or CDL file that a transform names cannot be parsed."},
    {Code::LUT_UNWRITABLE, "lut-unwritable", "A LUT file of the built-in config cannot be written."},
    {Code::MATRIX_SINGULAR, "matrix-singular",
     "A matrix has no inverse, so the conversion has one direction only."},
    {Code::COLOR_SPACE_UNKNOWN, "color-space-unknown", "No color space has that name."},
    {Code::VIEW_UNKNOWN, "view-unknown", "No view, or no display, has that name."},
    {Code::LOOK_UNKNOWN, "look-unknown", "No look has that name."},
    {Code::VIEW_TRANSFORM_UNKNOWN, "view-transform-unknown", "No view transform has that name."},
    {Code::ROLE_UNKNOWN, "role-unknown", "A role is not assigned, or its color space does not exist."},
    {Code::NAME_DUPLICATE, "name-duplicate", "Two entries have the same name; the later one is ignored."},
    {Code::CUSTOM_COLOR_SPACE_INVALID, "custom-color-space-invalid",
     "A custom color space has errors and is ignored."},
    {Code::CONVERSION_IMPOSSIBLE, "conversion-impossible", "OpenColorIO cannot make a conversion."},
    {Code::CDL_UNKNOWN, "cdl-unknown", "No CDL has that name."},
    {Code::CDL_INVALID, "cdl-invalid",
     "A CDL document holds no color correction, or one with invalid numbers."},
    {Code::CDL_ID_MISSING, "cdl-id-missing", "No color correction of a file has that id."},
    {Code::CDL_ID_REPEATED, "cdl-id-repeated", "Two color corrections of a file have the same id."},
    {Code::XML_MALFORMED, "xml-malformed", "A file is not well-formed XML."},
    {Code::MAPPING_MALFORMED, "mapping-malformed", "A mapping file cannot be parsed."},
    {Code::MAPPING_ENTRY_INVALID, "mapping-entry-invalid",
     "An entry of a mapping file is incomplete or unknown."},
    {Code::MAPPING_COLOR_SPACE_UNKNOWN, "mapping-color-space-unknown",
     "A format association names a color space that the active config lacks."},
    {Code::FORMAT_UNKNOWN, "format-unknown", "No format category has that name."},
    {Code::PREFERENCES_INVALID, "preferences-invalid",
     "A preferences file cannot be parsed, or is another kind of file."},
    {Code::IMAGE_UNREADABLE, "image-unreadable", "An image cannot be read."},
    {Code::IMAGE_UNWRITABLE, "image-unwritable",
     "An image cannot be written; what was there before is unchanged."},
    {Code::IMAGE_UNSUPPORTED, "image-unsupported", "An image format cannot hold what is to be written."},
    {Code::FRAMES_MISSING, "frames-missing", "Frames of a sequence do not exist."},
    {Code::USAGE, "usage", "A command line or a call is not valid."},
    {Code::USAGE_REFUSED, "usage-refused", "A valid command cannot be carried out on what is there."},
    {Code::SCRIPT_FAILED, "script-failed", "A line of a viewer script cannot be carried out."},
    {Code::GPU_UNAVAILABLE, "gpu-unavailable",
     "No OpenGL context can be made, or a shader does not compile."},
    {Code::OUT_OF_MEMORY, "out-of-memory", "Memory is exhausted."},
    {Code::LIBRARY_FAILURE, "library-failure", "OpenColorIO reports a failure of another kind."},
};

} // namespace

CodeTable get_codes() {
    return {std::begin(CODES), std::end(CODES)};
}

std::string_view get_name(Code code) {
    return CODES[static_cast<std::size_t>(code)].name;
}

} // namespace diagnostics
