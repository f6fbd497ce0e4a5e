#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

#include "image/deep_pixels.h"
#include "image/image_file.h"
#include "image/message.h"
#include "image/pixel_layout.h"
#include "image/reader_requests.h"
#include "image/shared_memory.h"

namespace image {

/// Limits on the time to read an image. Processor time detects endless loops, elapsed time endless waits.
struct ReaderLimits {
    std::chrono::duration<double> header_processor_time{20};
    std::chrono::duration<double> header_time{60};
    std::chrono::duration<double> part_processor_time{20};
    std::chrono::duration<double> part_time{60};
    /// Added to the limits of a part for each megabyte of its pixels.
    std::chrono::duration<double> processor_time_per_megabyte{0.5};
    std::chrono::duration<double> time_per_megabyte{2};
};

/// A process that reads images for this one and returns their pixels in shared memory, so that a crash or an
/// endless loop of OpenImageIO is reported as an error. It starts with the first image, reads one image after
/// the other, is started again after a crash or a timeout, and ends with this object.
///
/// Needs start_reader_server. Throws diagnostics::Failure with the file and the reason. For one thread at a
/// time.
class ReaderProcess {
public:
    explicit ReaderProcess(const ReaderLimits& limits = {}) : limits(limits) {}
    ~ReaderProcess();
    ReaderProcess(const ReaderProcess&) = delete;
    ReaderProcess& operator=(const ReaderProcess&) = delete;

    /// Headers of an image.
    struct OpenedImage {
        std::string format;            ///< OpenImageIO's name of the format.
        std::vector<PartHeader> parts; ///< At least one.
    };
    /// Opens an image for `read_part`; closes the previous one.
    OpenedImage open(const std::string& path);
    /// Reads the pixels of part `index` of the open image, whose spec is `spec`, into shared memory that
    /// `pixels` takes over.
    void read_part(std::size_t index, const OIIO::ImageSpec& spec, PixelBuffer& pixels);
    /// Reads the samples of the deep part `index`.
    void read_deep_part(std::size_t index, const OIIO::ImageSpec& spec, DeepPixels& pixels);

    /// Threads that the process decodes with, from its first image on. Default: those of OpenImageIO in this
    /// process.
    void set_threads(int wanted) { threads = wanted; }
    /// Starts the process, if it is not running. Returns false when it cannot be started, and true when
    /// images are read in this process (reads_in_process).
    bool is_ready();
    /// Ends the process and frees its memory; the next image starts it again.
    void stop() { end(); }
    /// 0 while the process is not running.
    pid_t get_process_id() const { return process; }

private:
    using Duration = std::chrono::duration<double>;

    void start();
    /// Ends the process. Returns a description of how it ended, for the user.
    std::string end();
    /// Sends a request, with `memory` unless it is null, and waits for the answer within the time limits. If
    /// the answer comes with new memory of at least `memory_bytes` bytes, it replaces `memory`.
    MessageReader ask(const MessageWriter& request, ReaderAnswer wanted, Duration processor_time,
                      Duration time, SharedMemory* memory = nullptr, std::size_t memory_bytes = 0);
    /// Calls `messages`, and converts its exceptions about invalid messages and memory to
    /// diagnostics::Failure.
    template <class Exchange>
    auto exchange(const Exchange& messages);

    ReaderLimits limits;
    int threads = 0; ///< 0 for those of OpenImageIO in this process.
    std::string path;
    pid_t process = 0;
    int socket = -1;
};

} // namespace image
