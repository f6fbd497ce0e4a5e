#include "image/reader_process.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <system_error>

#include <fmt/format.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "diagnostics/failure.h"
#include "image/message_channel.h"
#include "image/reader_server.h"
#include "image/startable_threads.h"

namespace image {

namespace {

using Duration = std::chrono::duration<double>;

/// Of a pixel of a deep image, for the time limits: more than most pixels have.
constexpr double EXPECTED_SAMPLES = 64;

/// Processor time that a process has used; 0 when it does not exist.
Duration get_processor_time(pid_t process) {
    clockid_t clock;
    timespec time = {};
    if (clock_getcpuclockid(process, &clock) == 0)
        clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::string describe_end(int status) {
    if (!WIFSIGNALED(status))
        return "the process that reads it has ended";
    if (WTERMSIG(status) == SIGKILL)
        return "the process that reads it was killed (out of memory?)";
    return fmt::format("OpenImageIO crashed on it ({})", strsignal(WTERMSIG(status)));
}

} // namespace

ReaderProcess::~ReaderProcess() {
    try {
        end();
    } catch (...) { // no memory for the description, which is not used here
    }
}

bool ReaderProcess::is_ready() {
    try {
        if (!reads_in_process())
            start();
    } catch (const diagnostics::Failure&) {
        return false;
    }
    return true;
}

void ReaderProcess::start() {
    if (process != 0)
        return;
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        fail_to_read(path, fmt::format("cannot connect to an image reader: {}", std::strerror(errno)));
    socket = ends[0];
    std::string reason;
    try {
        process = start_reader(ends[1]);
    } catch (const std::runtime_error& error) {
        reason = error.what();
    }
    ::close(ends[1]);
    if (process == 0) {
        end();
        fail_to_read(path, fmt::format("cannot start an image reader: {}; COLORIO_READ_IN_PROCESS=1 reads "
                                       "without one, but a damaged image can then crash this process",
                                       reason));
    }
}

std::string ReaderProcess::end() {
    std::string reason;
    if (process != 0) {
        const std::optional<int> status = end_reader(process);
        reason = status ? describe_end(*status) : "the process that starts image readers has ended";
    }
    process = 0;
    if (socket >= 0)
        ::close(socket);
    socket = -1;
    return reason;
}

MessageReader ReaderProcess::ask(const MessageWriter& request, ReaderAnswer wanted, Duration processor_time,
                                 Duration time, SharedMemory* memory, std::size_t memory_bytes) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    const Duration processor_time_before = get_processor_time(process);
    const auto is_in_time = [&] {
        return Clock::now() - begin < time &&
               get_processor_time(process) - processor_time_before < processor_time;
    };
    const MessageChannel channel(socket);
    channel.send(request.get_bytes(), memory != nullptr ? memory->get_descriptor() : -1);
    MessageChannel::Received answer; // also reports a reader that has ended
    const MessageChannel::Outcome outcome = channel.receive(answer, is_in_time);
    if (outcome == MessageChannel::Outcome::GIVEN_UP) {
        end();
        fail_to_read(
            path, fmt::format("reading it takes more than {:.0f} s", Duration(Clock::now() - begin).count()));
    }
    if (outcome == MessageChannel::Outcome::CLOSED)
        fail_to_read(path, end());
    if (answer.descriptor >= 0) {
        SharedMemory received(answer.descriptor, memory_bytes);
        if (memory != nullptr)
            *memory = std::move(received);
    }
    MessageReader reader(std::move(answer.bytes));
    const auto kind = reader.get<ReaderAnswer>();
    if (kind == ReaderAnswer::FAILED)
        diagnostics::fail_file(diagnostics::Code::IMAGE_UNREADABLE, reader.get_text(), path);
    if (kind != wanted)
        throw MessageError("unexpected kind of answer");
    return reader;
}

template <class Exchange>
auto ReaderProcess::exchange(const Exchange& messages) {
    try {
        return messages();
    } catch (const MessageError& error) {
        end();
        fail_to_read(path, fmt::format("invalid answer of the image reader: {}", error.what()));
    } catch (const std::system_error& error) {
        end();
        fail_to_read(path, fmt::format("no memory for its pixels: {}", error.code().message()));
    }
}

ReaderProcess::OpenedImage ReaderProcess::open(const std::string& image_path) {
    path = image_path;
    start();
    MessageWriter request;
    request.add(ReaderRequest::OPEN);
    std::error_code error;
    request.add_text(std::filesystem::current_path(error).string());
    request.add_text(path);
    const int most = get_thread_limit() > 0 ? get_thread_limit() : OIIO::get_int_attribute("threads");
    request.add(threads > 0 ? std::min(threads, most) : most);
    request.add(get_thread_limit() > 0); // and so counted
    return exchange([&] {
        MessageReader answer =
            ask(request, ReaderAnswer::OPENED, limits.header_processor_time, limits.header_time);
        OpenedImage image;
        image.format = answer.get_text();
        for (std::size_t left = answer.get_count(1); left > 0; --left) {
            const int subimage = answer.get<int>();
            const int level = answer.get<int>();
            image.parts.push_back({subimage, level, answer.get_spec()});
        }
        if (image.parts.empty())
            throw MessageError("no parts");
        return image;
    });
}

void ReaderProcess::read_part(std::size_t index, const OIIO::ImageSpec& spec, PixelBuffer& pixels) {
    if (process == 0)
        fail_to_read(path, "the process that reads it has ended");
    MessageWriter request;
    request.add(ReaderRequest::READ);
    request.add(static_cast<std::uint32_t>(index));
    const std::size_t bytes = spec.image_bytes(true);
    const double megabytes = static_cast<double>(bytes) / 1e6;
    SharedMemory memory = pixels.release_shared();
    exchange([&] {
        ask(request, ReaderAnswer::READ,
            limits.part_processor_time + megabytes * limits.processor_time_per_megabyte,
            limits.part_time + megabytes * limits.time_per_megabyte, &memory, bytes);
        if (memory.size() < bytes)
            throw MessageError("no pixels");
    });
    pixels.share(std::move(memory), bytes);
}

void ReaderProcess::read_deep_part(std::size_t index, const OIIO::ImageSpec& spec, DeepPixels& pixels) {
    if (process == 0)
        fail_to_read(path, "the process that reads it has ended");
    MessageWriter request;
    request.add(ReaderRequest::READ_DEEP);
    request.add(static_cast<std::uint32_t>(index));
    const double megabytes = static_cast<double>(spec.image_bytes(true)) * EXPECTED_SAMPLES / 1e6;
    exchange([&] {
        SharedMemory memory;
        MessageReader answer =
            ask(request, ReaderAnswer::READ_DEEP,
                limits.part_processor_time + megabytes * limits.processor_time_per_megabyte,
                limits.part_time + megabytes * limits.time_per_megabyte, &memory);
        const auto bytes = answer.get<std::uint64_t>();
        if (memory.size() < bytes || !unpack(memory.data(), bytes, spec, pixels))
            throw MessageError("invalid samples");
    });
}

} // namespace image
