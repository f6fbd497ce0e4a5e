#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "colorio/ocio/types.h"
#include "pixel/chain.h"

namespace ocio {

/// A processor's operations as a program of the project's own vector code. It is made once so many pixels
/// have been asked for that it is worth it, in one picture or in many small ones, and then kept; threads may
/// ask at once.
class FastPath {
public:
    /// Whether there will be a program at all is decided here, by `get_fast_path()`.
    explicit FastPath(const library::ConstProcessorRcPtr& processor);

    /// The program is made when the pictures that were asked for have so many pixels together.
    static long get_least_pixels();

    /// The program for a picture of that many pixels, both numbers positive; null when the library is to
    /// convert it: because too few pixels have been asked for yet, the program is not known to give the
    /// library's results, or the fast path is switched off. Once there is a program, it is for pictures of
    /// any size.
    const pixel::Program* program_for(long width, long height) const;
    /// The program, whatever the size of the picture; null where there is none, for the reason `why_not`.
    const pixel::Program* get_program(std::string& why_not) const;

private:
    void make_once() const;
    void make_program() const;

    library::ConstProcessorRcPtr processor_; ///< null when switched off
    mutable std::atomic<long>
        pixels_left_; ///< to be asked for before the program is made; 0 and less: it was
    mutable std::once_flag made_;
    mutable std::unique_ptr<const pixel::Program> program_;
    mutable std::string why_not_; ///< empty where there is a program
};

} // namespace ocio
