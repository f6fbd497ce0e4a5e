#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

#include "image/image_file.h"
#include "image/message.h"
#include "image/pixel_layout.h"
#include "image/reader_requests.h"
#include "image/shared_memory.h"

namespace image {

/// How long one image may take. Processor time shows a runaway, time on the clock one that waits for ever.
struct ReaderLimits {
    std::chrono::duration<double> header_processor_time{20};
    std::chrono::duration<double> header_time{60};
    std::chrono::duration<double> part_processor_time{20};
    std::chrono::duration<double> part_time{60};
    /// For every megabyte of pixels, on top of that for a part.
    std::chrono::duration<double> processor_time_per_megabyte{0.5};
    std::chrono::duration<double> time_per_megabyte{2};
};

/// A process that reads images for this one and hands their pixels over in shared memory, so that a crash or
/// a runaway of OpenImageIO is an error like any other. It starts with the first image, serves any number of
/// them one after the other, is replaced when it had to be ended, and ends with this object.
///
/// Needs start_reader_server. Throws diagnostics::Failure with the file and the reason. One thread at a time.
class ReaderProcess {
public:
    explicit ReaderProcess(const ReaderLimits& limits = {}) : limits(limits) {}
    ~ReaderProcess();
    ReaderProcess(const ReaderProcess&) = delete;
    ReaderProcess& operator=(const ReaderProcess&) = delete;

    struct OpenedImage {
        std::string format;
        std::vector<PartHeader> parts;
    };
    /// Opens an image in place of the one before. Later calls of `read_part` read it.
    OpenedImage open(const std::string& path);
    /// Reads pixels of the image; those of `pixels` become memory that both processes see.
    void read_part(std::size_t index, const OIIO::ImageSpec& spec, PixelBuffer& pixels);

    /// Starts the process, if there is none yet; false where that fails. True when images are read in this
    /// process.
    bool is_ready();
    /// 0 while there is none.
    pid_t get_process_id() const { return process; }

private:
    using Duration = std::chrono::duration<double>;

    void start();
    /// How the process ended, for the user. Leaves none.
    std::string end();
    /// Sends a request, with `memory` where there is one, and waits for the answer as long as the times
    /// allow; new memory of at least `memory_bytes` bytes that comes with it takes the place of `memory`.
    MessageReader ask(const MessageWriter& request, ReaderAnswer wanted, Duration processor_time,
                      Duration time, SharedMemory* memory = nullptr, std::size_t memory_bytes = 0);
    /// Calls `messages`, and makes failures of what is wrong with messages.
    template <class Exchange>
    auto exchange(const Exchange& messages);

    ReaderLimits limits;
    std::string path;
    pid_t process = 0;
    int socket = -1;
};

} // namespace image
