#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

/// True when the name of a layer or a part is one that renderers and compositing programs give to data:
/// normals, positions, depth, motion, texture coordinates, ids, mattes and counts of samples. Each part of
/// the name between dots counts by its last word, without digits and words such as "world", "pass" or "x":
/// "bumpNormals", "N_world", "velocity_x", "crypto_object00", "left.depth", but not "matte_painting". Letters
/// such as "N" are names of data only without other words than these, "AOV" and "LPE": "AOV_N", "N1", but not
/// "light_N" or "n1".
bool is_data_name(std::string_view name);

/// The names of the cryptomattes that the metadata declare: values of "cryptomatte/<key>/name".
std::vector<std::string> get_cryptomatte_names(const OIIO::ImageSpec& spec);

/// True when a layer holds the cryptomatte `cryptomatte` or its preview: that name, with or without digits.
bool belongs_to_cryptomatte(std::string_view layer, std::string_view cryptomatte);

} // namespace image
