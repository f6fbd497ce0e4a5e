#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <OpenImageIO/filesystem.h>

namespace image {

/// The file that OpenImageIO's writers write to. On a failed write some writers ignore the failure, that of
/// JPEG ends the process, and that of tiled OpenEXR waits forever. Therefore `write` never reports a failure:
/// the first one is stored for `finish`, and nothing more is written.
class OutputFile : public OIIO::Filesystem::IOProxy {
public:
    /// Opens and truncates the file at `path`, which must exist.
    explicit OutputFile(const std::string& path);
    ~OutputFile() override;

    /// Makes `write` insert `bytes` into the file at `offset`, which is not written yet.
    void insert(int64_t offset, std::string bytes);
    /// Makes `write` compress the PNG file that it gets, uncompressed and in order.
    void compress_png();
    /// Writes the rest of the buffer and closes the file. Returns the reason of the first failure; empty if
    /// the file is complete.
    std::string finish();
    /// Reason of the first failed write; empty for none. Thread-safe.
    std::string get_failure() const;

    const char* proxytype() const override { return "tool"; }
    void close() override { write_pending(); }
    bool seek(int64_t offset) override;
    size_t read(void* bytes, size_t size) override;
    size_t write(const void* bytes, size_t size) override;
    size_t pread(void* bytes, size_t size, int64_t offset) override;
    size_t pwrite(const void* bytes, size_t size, int64_t offset) override;
    size_t size() const override;

private:
    class Compressed;

    /// Writes at the current position, and what is to be inserted there.
    void write_here(const char* bytes, size_t size);
    /// Writes through the buffer.
    void append(const char* bytes, size_t size);
    /// Writes without the buffer. Does nothing after a failure.
    void write_out(const char* bytes, size_t size, int64_t offset) const;
    void write_pending() const;
    void remember_failure() const;
    void remember_failure(const std::string& reason) const;

    int descriptor;
    std::unique_ptr<Compressed> compressed; ///< Empty where the file is written as it comes.
    std::string insertion;                  ///< Empty for none, or when it is written.
    int64_t insertion_offset = 0;
    mutable std::vector<char> pending; ///< Unwritten bytes that end at the current position.
    mutable std::string failure;
    mutable std::mutex failure_mutex;
};

} // namespace image
