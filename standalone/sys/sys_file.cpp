#include "host/sys/sys_file.h"

#include <algorithm>
#include <optional>
#include <string>

#include "standalone/sys/file_replacement.h"
#include "standalone/sys/input_file.h"

struct SysFile::State {
    std::optional<InputFile> input;
    std::optional<FileReplacement> output;
};

SysFile::SysFile(const CoreString& path, Mode mode, int) : state(std::make_unique<State>()) {
    if (mode == MODE_WRITE)
        state->output.emplace(path.get_data());
    else
        state->input.emplace(path.get_data());
}

SysFile::~SysFile() = default;

bool SysFile::is_opened() const {
    return (state->input && state->input->is_open()) || (state->output && state->output->is_open());
}

long long SysFile::write(const CoreString& text) {
    return state->output && state->output->write(text.view()) ? static_cast<long long>(text.get_count()) : -1;
}

CoreString SysFile::read(unsigned int count) {
    std::string bytes;
    if (!state->input || !state->input->read(count, bytes))
        return {};
    return CoreString(std::string_view(bytes));
}

bool SysFile::close() {
    const bool was_open = is_opened();
    const bool closed = state->output ? state->output->commit() : was_open;
    state->input.reset();
    return closed;
}
