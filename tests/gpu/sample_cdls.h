#pragma once

#include <vector>

#include "colorio/color_io_manager.h"

/// One CDL per kind of correction, and one of all.
std::vector<ColorIOManager::ColorDecisionListDef> get_sample_cdls();
