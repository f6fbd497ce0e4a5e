#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "colorio/ocio/types.h"
#include "pixel/chain.h"

namespace ocio {

/// A processor's operations as a program of the project's own vector code. It is made at the first picture
/// that is big enough to be worth it, and then kept; threads may ask at once.
class FastPath {
public:
    /// Whether there will be a program at all is decided here, by `get_fast_path()`.
    explicit FastPath(const library::ConstProcessorRcPtr& processor);

    /// Pictures of fewer pixels are left to the library.
    static long get_least_pixels();

    /// The program for a picture of that many pixels; null when the library is to convert it, because it is
    /// small, the program is not known to give the library's results, or the fast path is switched off.
    const pixel::Program* program_for(long width, long height) const;
    /// The program, whatever the size of the picture; null where there is none, for the reason `why_not`.
    const pixel::Program* get_program(std::string& why_not) const;

private:
    void make_program() const;

    library::ConstProcessorRcPtr processor_; ///< null when switched off
    mutable std::once_flag made_;
    mutable std::unique_ptr<const pixel::Program> program_;
    mutable std::string why_not_; ///< empty where there is a program
};

} // namespace ocio
