#pragma once

namespace image {

/// Main loop of a reader process: reads images for the program at the other end of `socket`, one at a time
/// and within limits on memory, until the program closes its end. The process must not have other threads.
[[noreturn]] void serve_images(int socket);

} // namespace image
