#include "image/output_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "image/png_compressor.h"

namespace image {

namespace {

/// Smaller pieces are collected before they are written: some formats write a few bytes at a time.
constexpr size_t BUFFER_SIZE = 64 * 1024;

/// Calls `transfer(done)`, which transfers bytes from position `done` on, until all `size` bytes are done or
/// it fails. Returns the number of bytes done.
template <class Transfer>
size_t transfer_all(size_t size, const Transfer& transfer) {
    size_t done = 0;
    while (done < size) {
        const ssize_t step = transfer(done);
        if (step < 0 && errno == EINTR)
            continue;
        if (step <= 0)
            break;
        done += static_cast<size_t>(step);
    }
    return done;
}

} // namespace

/// Compresses what is written, into the file.
class OutputFile::Compressed : PngCompressor::Sink {
public:
    explicit Compressed(OutputFile& file) : file(file) {}

    PngCompressor compressor{*this};

private:
    void take(const char* bytes, std::size_t size) noexcept override { file.write_here(bytes, size); }

    OutputFile& file;
};

OutputFile::OutputFile(const std::string& path)
    : IOProxy(path, Write), descriptor(open(path.c_str(), O_RDWR | O_TRUNC | O_CLOEXEC)) {
    pending.reserve(BUFFER_SIZE);
    if (descriptor < 0) {
        remember_failure();
        m_mode = Closed;
    }
}

OutputFile::~OutputFile() {
    if (descriptor >= 0)
        ::close(descriptor);
}

std::string OutputFile::get_failure() const {
    std::lock_guard<std::mutex> lock(failure_mutex);
    return failure;
}

void OutputFile::remember_failure() const {
    remember_failure(std::strerror(errno));
}

void OutputFile::remember_failure(const std::string& reason) const {
    std::lock_guard<std::mutex> lock(failure_mutex);
    if (failure.empty())
        failure = reason;
}

std::string OutputFile::finish() {
    if (compressed && compressed->compressor.has_failed())
        remember_failure("cannot compress its pixels");
    write_pending();
    if (descriptor >= 0 && ::close(descriptor) != 0)
        remember_failure();
    descriptor = -1;
    m_mode = Closed;
    return get_failure();
}

void OutputFile::write_pending() const {
    write_out(pending.data(), pending.size(), m_pos - static_cast<int64_t>(pending.size()));
    pending.clear();
}

void OutputFile::write_out(const char* bytes, size_t size, int64_t offset) const {
    if (size == 0 || !get_failure().empty())
        return;
    const int errno_before = errno; // restored below, because OpenEXR's writer takes errors from errno
    const size_t written = transfer_all(size, [&](size_t done) {
        return ::pwrite(descriptor, bytes + done, size - done, offset + static_cast<off_t>(done));
    });
    if (written < size)
        remember_failure();
    errno = errno_before;
}

bool OutputFile::seek(int64_t offset) {
    write_pending();
    m_pos = offset;
    return offset >= 0;
}

void OutputFile::insert(int64_t offset, std::string bytes) {
    insertion = std::move(bytes);
    insertion_offset = offset;
}

void OutputFile::compress_png() {
    compressed = std::make_unique<Compressed>(*this);
}

size_t OutputFile::write(const void* bytes, size_t size) {
    if (compressed)
        compressed->compressor.write(static_cast<const char*>(bytes), size);
    else
        write_here(static_cast<const char*>(bytes), size);
    return size;
}

void OutputFile::write_here(const char* begin, size_t size) {
    const int64_t head = insertion_offset - m_pos;
    if (insertion.empty() || head < 0 || head > static_cast<int64_t>(size)) {
        append(begin, size);
        return;
    }
    append(begin, static_cast<size_t>(head));
    append(insertion.data(), insertion.size());
    insertion.clear();
    append(begin + head, size - static_cast<size_t>(head));
}

void OutputFile::append(const char* begin, size_t size) {
    if (pending.size() + size > BUFFER_SIZE)
        write_pending();
    if (size > BUFFER_SIZE)
        write_out(begin, size, m_pos);
    else
        pending.insert(pending.end(), begin, begin + size);
    m_pos += static_cast<int64_t>(size);
}

size_t OutputFile::pwrite(const void* bytes, size_t size, int64_t offset) {
    write_out(static_cast<const char*>(bytes), size, offset);
    return size;
}

size_t OutputFile::read(void* bytes, size_t size) {
    write_pending();
    const size_t count = pread(bytes, size, m_pos);
    m_pos += static_cast<int64_t>(count);
    return count;
}

size_t OutputFile::pread(void* bytes, size_t size, int64_t offset) {
    return transfer_all(size, [&](size_t done) {
        return ::pread(descriptor, static_cast<char*>(bytes) + done, size - done,
                       offset + static_cast<off_t>(done));
    });
}

size_t OutputFile::size() const {
    write_pending();
    struct stat status;
    return fstat(descriptor, &status) == 0 ? static_cast<size_t>(status.st_size) : 0;
}

} // namespace image
