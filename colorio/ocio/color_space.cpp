#include "colorio/ocio/color_space.h"

namespace ocio {

ColorSpaceRcPtr create_color_space() {
    return library::ColorSpace::Create();
}

void set_name(const ColorSpaceRcPtr& space, const char* name) {
    space->setName(name);
}

void set_family(const ColorSpaceRcPtr& space, const char* family) {
    space->setFamily(family);
}

void set_description(const ColorSpaceRcPtr& space, const char* description) {
    space->setDescription(description);
}

void set_bit_depth(const ColorSpaceRcPtr& space, BitDepth depth) {
    space->setBitDepth(depth);
}

void set_allocation(const ColorSpaceRcPtr& space, Allocation allocation) {
    space->setAllocation(allocation);
}

void set_allocation_vars(const ColorSpaceRcPtr& space, int count, const float* variables) {
    space->setAllocationVars(count, variables);
}

void set_transform(const ColorSpaceRcPtr& space, const ConstTransformRcPtr& transform,
                   ColorSpaceDirection direction) {
    space->setTransform(transform, direction);
}

const char* get_name(const ConstColorSpaceRcPtr& space) {
    return space->getName();
}

const char* get_family(const ConstColorSpaceRcPtr& space) {
    return space->getFamily();
}

const char* get_description(const ConstColorSpaceRcPtr& space) {
    return space->getDescription();
}

BitDepth get_bit_depth(const ConstColorSpaceRcPtr& space) {
    return space->getBitDepth();
}

Allocation get_allocation(const ConstColorSpaceRcPtr& space) {
    return space->getAllocation();
}

int get_allocation_num_vars(const ConstColorSpaceRcPtr& space) {
    return space->getAllocationNumVars();
}

void get_allocation_vars(const ConstColorSpaceRcPtr& space, float* variables) {
    space->getAllocationVars(variables);
}

ConstTransformRcPtr get_transform(const ConstColorSpaceRcPtr& space, ColorSpaceDirection direction) {
    return space->getTransform(direction);
}

} // namespace ocio
