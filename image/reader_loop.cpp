#include "image/reader_loop.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <memory>
#include <new>
#include <optional>
#include <system_error>
#include <thread>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "diagnostics/failure.h"
#include "image/deep_pixels.h"
#include "image/image_file.h"
#include "image/message.h"
#include "image/message_channel.h"
#include "image/reader_requests.h"
#include "image/shared_memory.h"
#include "image/startable_threads.h"

namespace image {

namespace {

/// Memory for headers, metadata and the internal data of image libraries.
constexpr rlim_t GENERAL_BYTES = rlim_t(1) << 30;
/// Copies of the pixels made by image libraries, some of which use 32 bits for a channel of 8.
constexpr rlim_t COPIES_OF_PIXELS = 6;
/// Threads per core that OpenImageIO and OpenEXR start, and the stack of a thread.
constexpr rlim_t THREADS_PER_CORE = 2;
constexpr rlim_t STACK_BYTES = rlim_t(8) << 20;

/// Current size of the private writable memory of the process, as limited by RLIMIT_DATA.
rlim_t get_data_bytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmData:") {
            rlim_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes << 10;
        }
    return 0;
}

void set_limit(decltype(RLIMIT_DATA) resource, rlim_t wanted) {
    rlimit limit;
    if (getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_cur = std::min(wanted, limit.rlim_max);
    setrlimit(resource, &limit);
}

/// Restrictions for all images: no core dumps, no new privileges, and the first process to be killed when
/// memory runs out. The limit on file sizes is lifted because it also applies to shared memory; this process
/// writes no files.
void restrict_process() {
    std::signal(SIGXFSZ, SIG_IGN);
    set_limit(RLIMIT_CORE, 0);
    set_limit(RLIMIT_FSIZE, RLIM_INFINITY);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_NAME, "image-reader");
    std::ofstream("/proc/self/oom_score_adj") << 500;
}

class ReaderLoop {
public:
    explicit ReaderLoop(int socket) : channel(socket) {}

    void run() {
        MessageChannel::Received request;
        while (channel.receive(request) == MessageChannel::Outcome::RECEIVED) {
            MessageWriter answer;
            int new_memory = -1;
            try {
                answer_to(request, answer, new_memory);
            } catch (const diagnostics::Failure& failure) {
                answer = make_failure(failure.what());
                new_memory = -1;
            } catch (const std::exception& error) {
                answer = make_failure(fmt::format("cannot read '{}': {}", path, error.what()));
                new_memory = -1;
            }
            if (!channel.send(answer.get_bytes(), new_memory))
                return;
        }
    }

private:
    static MessageWriter make_failure(const std::string& text) {
        MessageWriter answer;
        answer.add(ReaderAnswer::FAILED);
        answer.add_text(text);
        return answer;
    }

    void answer_to(MessageChannel::Received& request, MessageWriter& answer, int& new_memory) {
        MessageReader reader(std::move(request.bytes));
        const auto kind = reader.get<ReaderRequest>();
        if (kind == ReaderRequest::OPEN) {
            const std::string folder = reader.get_text();
            path = reader.get_text();
            if (!folder.empty() && chdir(folder.c_str()) != 0 && path[0] != '/')
                fail_to_read(path, fmt::format("cannot change to the folder '{}'", folder));
            const int threads = reader.get<int>();
            open(threads, reader.get<bool>(), answer);
        } else if (kind == ReaderRequest::READ_DEEP) {
            read_deep(reader.get<std::uint32_t>(), answer, new_memory);
        } else {
            read(reader.get<std::uint32_t>(), request.descriptor, new_memory);
            answer.add(ReaderAnswer::READ);
        }
    }

    void open(int threads, bool counted, MessageWriter& answer) {
        file.reset();
        start_threads(threads, counted);
        allow_memory(0);
        try {
            file.emplace(path);
        } catch (const std::bad_alloc&) {
            fail_to_read(path, "its header needs too much memory");
        }
        answer.add(ReaderAnswer::OPENED);
        answer.add_text(file->get_format());
        answer.add(file->get_parts().size());
        for (const PartHeader& part : file->get_parts()) {
            answer.add(part.subimage);
            answer.add(part.level);
            answer.add_spec(part.spec);
        }
    }

    const OIIO::ImageSpec& get_spec(std::size_t index) const {
        if (!file || index >= file->get_parts().size())
            throw MessageError("invalid part");
        return file->get_parts()[index].spec;
    }

    void read(std::size_t index, int descriptor, int& new_memory) {
        const OIIO::ImageSpec& spec = get_spec(index);
        const std::size_t bytes = spec.image_bytes(true);
        with_memory_for(spec, [&] {
            new_memory = take_memory(bytes, descriptor);
            allow_memory(bytes);
            file->read_part(index, memory.data());
        });
    }

    /// The header does not say how many samples there are: they may take what the machine has.
    void read_deep(std::size_t index, MessageWriter& answer, int& new_memory) {
        with_memory_for(get_spec(index), [&] {
            allow_memory(OIIO::Sysutil::physical_memory() / COPIES_OF_PIXELS);
            OIIO::DeepData pixels;
            file->read_deep_part(index, pixels);
            const std::size_t bytes = get_packed_bytes(pixels);
            new_memory = take_memory(bytes, -1);
            pack(pixels, memory.data());
            answer.add(ReaderAnswer::READ_DEEP);
            answer.add(std::uint64_t{bytes});
        });
    }

    /// Reports that there is not enough memory for the pixels.
    template <class Work>
    void with_memory_for(const OIIO::ImageSpec& spec, const Work& work) const {
        try {
            work();
        } catch (const std::bad_alloc&) {
            fail_to_read(path, fmt::format("no memory for {} x {} {}pixels", spec.width, spec.height,
                                           spec.deep ? "deep " : ""));
        } catch (const std::system_error& error) {
            if (error.code() == std::errc::file_too_large) // counts for memory that processes share, too
                fail_to_read(path, fmt::format("the file size limit is too small for {} x {} pixels; raise "
                                               "it (ulimit -f), or set COLORIO_READ_IN_PROCESS=1",
                                               spec.width, spec.height));
            fail_to_read(path, fmt::format("no memory for {} x {} pixels: {}", spec.width, spec.height,
                                           error.code().message()));
        }
    }

    /// Takes over the program's memory, or allocates new memory if that is missing or too small. Returns the
    /// descriptor of new memory, else -1.
    int take_memory(std::size_t bytes, int descriptor) {
        if (descriptor >= 0 && memory.is_same(descriptor)) {
            close(descriptor);
        } else if (descriptor >= 0) {
            memory = SharedMemory();
            memory = SharedMemory(descriptor, 0); // its size is checked below
        }
        if (descriptor >= 0 && memory.size() >= bytes)
            return -1;
        memory = SharedMemory();
        memory = SharedMemory(bytes);
        return memory.get_descriptor();
    }

    /// `counted`: the program has made sure that they can be started.
    void start_threads(int wanted, bool counted) {
        if (threads != 0)
            return;
        const int cores = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
        const int count = wanted > 0 ? wanted : cores;
        threads = counted ? use_threads(count) : limit_threads(count);
        data_bytes = get_data_bytes();
    }

    void allow_memory(std::size_t pixel_bytes) const {
        set_limit(RLIMIT_DATA, data_bytes + static_cast<rlim_t>(threads) * THREADS_PER_CORE * STACK_BYTES +
                                   GENERAL_BYTES + COPIES_OF_PIXELS * pixel_bytes);
    }

    MessageChannel channel;
    int threads = 0;
    rlim_t data_bytes = 0; ///< Of the process before its first image.
    std::string path;
    std::optional<ImageFile> file;
    SharedMemory memory;
};

} // namespace

void serve_images(int socket) {
    restrict_process();
    try {
        ReaderLoop(socket).run();
    } catch (...) { // an invalid message; the program finds the connection closed
    }
    _exit(0);
}

} // namespace image
