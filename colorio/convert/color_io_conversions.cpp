#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/facade/module_boundary.h"

// The facade takes the destination first, the converter takes it last.

bool ColorIO::convert_buffer(float* data, const unsigned int& size1, unsigned int size2,
                             const unsigned int& size3, const CoreString& name1, const CoreString& name2) {
    if (!data || size1 == 0 || size2 == 0 || size3 == 0 || name1 == name2)
        return false;
    return at_boundary(false, [&] {
        ColorIOConverter converter;
        return converter.configure(name2, name1) && converter.convert_buffer(data, size1, size2, size3);
    });
}

namespace {

struct Planes {
    float *red, *green, *blue, *alpha;
    unsigned int width, height;
};

using Configure = bool (ColorIOConverter::*)(const CoreString& source, const CoreString& destination);

bool convert_planes(const Planes& planes, Configure configure, const CoreString& name1,
                    const CoreString& name2) {
    if (!planes.red || !planes.green || !planes.blue || planes.width == 0 || planes.height == 0 ||
        name1 == name2)
        return false;
    return at_boundary(false, [&] {
        ColorIOConverter converter;
        return (converter.*configure)(name2, name1) &&
               converter.convert_buffers(planes.red, planes.green, planes.blue, planes.alpha, planes.width,
                                         planes.height);
    });
}

} // namespace

bool ColorIO::convert_buffers(float* r, float* g, float* b, float* a, const unsigned int& width,
                              unsigned int height, const CoreString& name1, const CoreString& name2) {
    return convert_planes({r, g, b, a, width, height}, &ColorIOConverter::configure, name1, name2);
}

bool ColorIO::convert_CDL_buffers(float* r, float* g, float* b, float* a, const unsigned int& width,
                                  unsigned int height, const CoreString& name1, const CoreString& name2) {
    return convert_planes({r, g, b, a, width, height}, &ColorIOConverter::configure_CDL, name1, name2);
}
