#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/sys/sys_env.h"
#include "host/sys/sys_file.h"
#include "host/sys/sys_filesystem.h"

namespace fs = std::filesystem;

CoreString sys_get_env(const CoreBasicString& name) {
    return CoreString(std::getenv(name.get_data()));
}

bool SysFilesystem::file_exists(const CoreBasicString& path) {
    std::error_code ignored;
    return fs::is_regular_file(path.get_data(), ignored);
}

CoreString SysFilesystem::get_file_extension(const CoreBasicString& path) {
    const std::string extension = fs::path(path.view()).extension();
    return CoreString(extension.empty() ? "" : extension.c_str() + 1);
}

// The new file has another name until it is complete. (A host for production also flushes it to the disk
// before it is renamed, keeps the old one's permissions, and takes a name that no other process has.)
struct SysFile::State {
    fs::path path, written;
    std::fstream stream;

    void remove() {
        std::error_code ignored;
        if (stream.is_open() && written != path)
            fs::remove(written, ignored);
        stream.close();
    }
};

SysFile::SysFile(const CoreString& path, Mode mode, int) : state(new State) {
    std::error_code ignored;
    state->path = state->written = fs::weakly_canonical(path.get_data(), ignored); // of the target of a link
    const bool is_replaced = !fs::exists(state->path, ignored) || fs::is_regular_file(state->path, ignored);
    if (mode == MODE_WRITE && is_replaced)
        state->written += ".new";
    state->stream.open(state->written,
                       std::ios::binary | (mode == MODE_WRITE ? std::ios::out : std::ios::in));
}

SysFile::~SysFile() {
    state->remove();
}
bool SysFile::is_opened() const {
    return state->stream.is_open();
}

long long SysFile::write(const CoreString& text) {
    if (!state->stream.is_open() || !state->stream.write(text.get_data(), text.get_count()))
        return -1;
    return text.get_count();
}

bool SysFile::close() {
    std::error_code error;
    const bool is_written = state->stream.is_open() && state->stream.flush();
    if (is_written && state->written != state->path)
        fs::rename(state->written, state->path, error);
    if (!is_written || error)
        state->remove();
    state->stream.close();
    return is_written && !error;
}
