#include "diagnostics/code.h"

#include <iterator>

namespace diagnostics {

namespace {

constexpr CodeInfo CODES[] = {
    {Code::FILE_MISSING, "file-missing", "A file does not exist."},
    {Code::FILE_NOT_REGULAR, "file-not-regular",
     "A path is not a regular file, but a folder, a pipe or a device."},
    {Code::FILE_UNREADABLE, "file-unreadable", "A file exists but cannot be read."},
    {Code::FILE_UNWRITABLE, "file-unwritable", "A file cannot be written; an existing file is unchanged."},
    {Code::FILE_TOO_LARGE, "file-too-large", "A file exceeds the size limit of its kind."},
    {Code::CONFIG_MISSING, "config-missing", "The selected OCIO config does not exist."},
    {Code::CONFIG_INVALID, "config-invalid", "An OCIO config cannot be parsed, or fails its check."},
    {Code::CONFIG_NEWER, "config-newer", "An OCIO config has a version that this OpenColorIO cannot read."},
    {Code::CONFIG_CYCLE, "config-cycle", "Transforms of an OCIO config refer to each other in a cycle."},
    {Code::CONFIG_TOO_COMPLEX, "config-too-complex",
     "An OCIO config exceeds the limits on nested or repeated transforms."},
    {Code::CONFIG_VARIABLE, "config-variable",
     "A context variable is unset, refers to itself, or grows without limit."},
    {Code::CONFIG_BUILTIN, "config-builtin", "The built-in config or its CDLs cannot be created."},
    {Code::LUT_MISSING, "lut-missing", "The LUT or CDL file of a transform is not found."},
    {Code::LUT_DAMAGED, "lut-damaged", "The LUT or CDL file of a transform cannot be parsed."},
    {Code::LUT_UNWRITABLE, "lut-unwritable", "A LUT file of the built-in config cannot be written."},
    {Code::MATRIX_SINGULAR, "matrix-singular",
     "A matrix, a CDL or a LUT file has no inverse, so that only one direction can be converted."},
    {Code::COLOR_SPACE_UNKNOWN, "color-space-unknown", "No color space has that name."},
    {Code::VIEW_UNKNOWN, "view-unknown", "No view, or no display, has that name."},
    {Code::LOOK_UNKNOWN, "look-unknown", "No look has that name."},
    {Code::NAMED_TRANSFORM_UNKNOWN, "named-transform-unknown", "No named transform has that name."},
    {Code::VIEW_TRANSFORM_UNKNOWN, "view-transform-unknown", "No view transform has that name."},
    {Code::ROLE_UNKNOWN, "role-unknown", "A role is not assigned, or its color space does not exist."},
    {Code::NAME_DUPLICATE, "name-duplicate", "Two entries have the same name; the later one is ignored."},
    {Code::CUSTOM_COLOR_SPACE_INVALID, "custom-color-space-invalid",
     "A custom color space has errors and is ignored."},
    {Code::CONVERSION_IMPOSSIBLE, "conversion-impossible",
     "OpenColorIO cannot convert between two color spaces or to a view."},
    {Code::CDL_UNKNOWN, "cdl-unknown", "No CDL has that name."},
    {Code::CDL_INVALID, "cdl-invalid", "A CDL file has no color correction, or invalid numbers."},
    {Code::CDL_ID_MISSING, "cdl-id-missing", "A CDL file has no color correction with that id."},
    {Code::CDL_ID_REPEATED, "cdl-id-repeated", "Two color corrections in a CDL file have the same id."},
    {Code::XML_MALFORMED, "xml-malformed", "A file is not well-formed XML."},
    {Code::MAPPING_MALFORMED, "mapping-malformed", "A mapping file cannot be parsed."},
    {Code::MAPPING_ENTRY_INVALID, "mapping-entry-invalid",
     "An entry of a mapping file is incomplete or unknown."},
    {Code::MAPPING_COLOR_SPACE_UNKNOWN, "mapping-color-space-unknown",
     "The color space of a format association is not in the active config."},
    {Code::FORMAT_UNKNOWN, "format-unknown", "No image format has that name."},
    {Code::PREFERENCES_INVALID, "preferences-invalid",
     "A preferences file cannot be parsed, or is not a preferences file."},
    {Code::HOME_MISSING, "home-missing",
     "The preferences file has no path, because the user has no home folder."},
    {Code::IMAGE_UNREADABLE, "image-unreadable", "An image cannot be read."},
    {Code::IMAGE_UNWRITABLE, "image-unwritable",
     "An image cannot be written; an existing file is unchanged."},
    {Code::IMAGE_UNSUPPORTED, "image-unsupported",
     "An image format does not support the part, channels or pixel type to be written."},
    {Code::LAYER_UNKNOWN, "layer-unknown", "An image has no layer or part of that name."},
    {Code::FRAMES_MISSING, "frames-missing", "Frames of a sequence do not exist."},
    {Code::NAME_SUBSTITUTED, "name-substituted", "A name was accepted as an alias or in another case."},
    {Code::COLOR_SPACE_CHOSEN, "color-space-chosen",
     "The color space of an image was determined automatically."},
    {Code::COLOR_SPACE_ASSUMED, "color-space-assumed",
     "The color space of an image is assumed or doubtful, and should be given."},
    {Code::COLOR_SPACE_INACTIVE, "color-space-inactive", "An inactive color space is used."},
    {Code::REFERENCE_CHANGED, "reference-changed",
     "A conversion between scene-referred and display-referred colors uses the default view transform."},
    {Code::COLORS_UNCHANGED, "colors-unchanged", "Source and destination are the same."},
    {Code::IMAGE_ADAPTED, "image-adapted",
     "An image is changed when it is written, because the format requires it."},
    {Code::CHANNELS_DROPPED, "channels-dropped",
     "Channels, parts or mipmaps of an image are not written, because the format does not support them."},
    {Code::METADATA_DROPPED, "metadata-dropped",
     "Metadata of an image is not written, because it does not apply to the new colors."},
    {Code::CDL_CHOSEN, "cdl-chosen",
     "The first of several color corrections of a file is used, because no id is given."},
    {Code::CDL_COPIED, "cdl-copied",
     "The numbers of a CDL file are copied; later edits of the file have no effect."},
    {Code::CDL_ROUNDED, "cdl-rounded", "The numbers of a CDL are written with fewer digits."},
    {Code::CDL_ELEMENT_IGNORED, "cdl-element-ignored", "A CDL file contains elements that are ignored."},
    {Code::FORMAT_SHADOWED, "format-shadowed",
     "A format association has no effect, because another one takes precedence."},
    {Code::TEMPORARY_FOLDER, "temporary-folder", "Temporary files are not kept in the user's cache folder."},
    {Code::PREFERENCE_CHANGED, "preference-changed", "A preference was changed together with another one."},
    {Code::USAGE, "usage", "A command line or an argument is invalid."},
    {Code::USAGE_REFUSED, "usage-refused", "A valid command cannot be executed in the current state."},
    {Code::SCRIPT_FAILED, "script-failed", "A line of a viewer script cannot be executed."},
    {Code::DISPLAY_MISSING, "display-missing", "No display is available to open a window on."},
    {Code::GPU_UNAVAILABLE, "gpu-unavailable", "No OpenGL context or window can be created."},
    {Code::GPU_LIMIT, "gpu-limit",
     "The OpenGL driver does not support an image, a LUT or a shader of that size or kind."},
    {Code::SHADER_INVALID, "shader-invalid", "The OpenGL driver does not compile or link a shader."},
    {Code::SHADER_IMPOSSIBLE, "shader-impossible",
     "A conversion has no shader, because source and destination are the same."},
    {Code::OUT_OF_MEMORY, "out-of-memory", "Out of memory."},
    {Code::SYSTEM_FAILURE, "system-failure",
     "The operating system cannot provide threads, pipes or other resources."},
    {Code::LIBRARY_FAILURE, "library-failure", "Another error of OpenColorIO."},
};

} // namespace

CodeTable get_codes() {
    return {std::begin(CODES), std::end(CODES)};
}

std::string_view get_name(Code code) {
    return CODES[static_cast<std::size_t>(code)].name;
}

} // namespace diagnostics
