// Converts one pixel of the built-in config, without a reader of images.
#include <iostream>

#include "workflow/conversion.h"
#include "workflow/session.h"

int main() {
    workflow::SessionOptions options;
    options.builtin_only = true;
    options.no_preferences = true;
    const workflow::Session session(options);
    workflow::ConversionRequest request;
    request.from = "sRGB";
    request.to = "linear";
    float pixel[4] = {1, 0, 1, 0.5f};
    workflow::Conversion(session, request).apply(pixel, 1, 1);
    std::cout << pixel[0] << ' ' << pixel[1] << ' ' << pixel[2] << ' ' << pixel[3] << '\n';
}
