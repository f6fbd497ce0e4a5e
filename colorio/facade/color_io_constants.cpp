#include "colorio/color_io_constants.h"

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"

const CoreStringView ColorIOManager::BUILTIN_FAMILY = CoreStringView::from_literal("Tavelion");
const CoreStringView ColorIOManager::BUILTIN_SRGB = CoreStringView::from_literal("sRGB");
const CoreStringView ColorIOManager::BUILTIN_LINEAR = CoreStringView::from_literal("linear");
const CoreStringView ColorIOManager::BUILTIN_CINEON = CoreStringView::from_literal("Cineon");

const char ColorIOManager::FAMILY_SEPARATOR = '|';
const char ColorIOManager::DISPLAY_SEPARATOR = '.';

CoreString ColorIOManager::s_default_CDL_name("No CDL");
CoreString ColorIOManager::s_default_color_picking_space_name("sRGB");
CoreString ColorIOManager::s_default_color_space_name("linear");

CoreString ColorIO::s_default_scene_linear;
CoreString ColorIO::s_default_color_picking;

ColorIO* ColorIO::s_singleton = nullptr;
ColorIOManager* ColorIOManager::s_instance = nullptr;
ColorIOAutoDetection* ColorIOAutoDetection::s_instance = nullptr;
