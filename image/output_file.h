#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include <OpenImageIO/filesystem.h>

namespace image {

/// The file that a format's writer writes to. The writers of some formats pass over failed writes, that of
/// JPEG ends the process, and that of OpenEXR's tiles waits for ever. So no write fails here: the first
/// failure is remembered for the end, and nothing is written after it.
class OutputFile : public OIIO::Filesystem::IOProxy {
public:
    /// Empties the file at `path`, which must exist.
    explicit OutputFile(const std::string& path);
    ~OutputFile() override;

    /// Writes what is still in memory and closes the file. Answers why it is not whole; empty when it is.
    std::string finish();
    /// Why a write failed so far; empty when none did.
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
    /// Writes at once, unless a write failed before.
    void write_out(const char* bytes, size_t size, int64_t offset) const;
    void write_pending() const;
    void remember_failure() const;

    int descriptor;
    mutable std::vector<char> pending; ///< Belongs in front of the current position.
    mutable std::string failure;
    mutable std::mutex failure_mutex;
};

} // namespace image
