#pragma once

namespace image {

/// Reads images for the program at the other end of `socket`, one at a time, within limits on memory; what a
/// reader process does until the program closes its end. The process must have no other threads.
[[noreturn]] void serve_images(int socket);

} // namespace image
