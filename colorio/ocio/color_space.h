#pragma once

#include "colorio/ocio/types.h"

namespace ocio {

ColorSpaceRcPtr create_color_space();

void set_name(const ColorSpaceRcPtr& space, const char* name);
void set_family(const ColorSpaceRcPtr& space, const char* family);
void set_description(const ColorSpaceRcPtr& space, const char* description);
void set_bit_depth(const ColorSpaceRcPtr& space, BitDepth depth);
void set_allocation(const ColorSpaceRcPtr& space, Allocation allocation);
/// `count` variables: minimum, maximum and, for lg2, an optional linear offset.
void set_allocation_vars(const ColorSpaceRcPtr& space, int count, const float* variables);
void set_transform(const ColorSpaceRcPtr& space, const ConstTransformRcPtr& transform,
                   ColorSpaceDirection direction);

const char* get_name(const ConstColorSpaceRcPtr& space);
const char* get_family(const ConstColorSpaceRcPtr& space);
const char* get_description(const ConstColorSpaceRcPtr& space);
BitDepth get_bit_depth(const ConstColorSpaceRcPtr& space);
Allocation get_allocation(const ConstColorSpaceRcPtr& space);
int get_allocation_num_vars(const ConstColorSpaceRcPtr& space);
void get_allocation_vars(const ConstColorSpaceRcPtr& space, float* variables);
/// The transform in that direction; null when none was set.
ConstTransformRcPtr get_transform(const ConstColorSpaceRcPtr& space, ColorSpaceDirection direction);

} // namespace ocio
