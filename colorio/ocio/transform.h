#pragma once

#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

using library::CDLTransformRcPtr;
using library::ConstCDLTransformRcPtr;
using library::FileTransformRcPtr;
using library::GroupTransformRcPtr;

FileTransformRcPtr create_file_transform();
void set_src(const FileTransformRcPtr& transform, const char* path);
void set_interpolation(const FileTransformRcPtr& transform, Interpolation interpolation);

CDLTransformRcPtr create_CDL_transform();
/// Reads one correction of a .cc, .ccc or .cdl file, recognized by its content. `cccid` selects the
/// correction of a collection (an id, or a position counted from 0); it is ignored for a single correction,
/// and empty means the first. The result is a copy. A failure is not cached: a corrected file is read again.
CDLTransformRcPtr create_CDL_transform_from_file(const char* path, const char* cccid);
/// Every correction of a collection file in file order, read once; a file of one correction gives one.
std::vector<CDLTransformRcPtr> create_CDL_transforms_from_file(const char* path);
void set_id(const CDLTransformRcPtr& transform, const char* id);
void set_slope(const CDLTransformRcPtr& transform, const float rgb[3]);
void set_offset(const CDLTransformRcPtr& transform, const float rgb[3]);
void set_power(const CDLTransformRcPtr& transform, const float rgb[3]);
void set_sat(const CDLTransformRcPtr& transform, float saturation);
void set_direction(const CDLTransformRcPtr& transform, TransformDirection direction);
const char* get_id(const ConstCDLTransformRcPtr& transform);
void get_slope(const ConstCDLTransformRcPtr& transform, float rgb[3]);
void get_offset(const ConstCDLTransformRcPtr& transform, float rgb[3]);
void get_power(const ConstCDLTransformRcPtr& transform, float rgb[3]);
float get_sat(const ConstCDLTransformRcPtr& transform);

GroupTransformRcPtr create_group_transform();
int get_size(const library::GroupTransform& group);
void push_back(const GroupTransformRcPtr& group, const TransformRcPtr& transform);

/// Parameters of a display transform.
struct DisplayTransform {
    const char* input_color_space_name;
    const char* display;
    const char* view;
};

} // namespace ocio
