#pragma once

namespace tool {

/// Mesa's software driver for OpenGL waits forever for threads that the system does not start. Lets it draw
/// without any where few can be started, unless the user has set their number (LP_NUM_THREADS). To be called
/// before OpenGL is used, while no other thread runs.
void limit_gl_threads();

} // namespace tool
