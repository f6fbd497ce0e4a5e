#include "host/sys/sys_file.h"

#include <optional>
#include <string>

#include "files/input_file.h"
#include "files/replacement.h"

namespace {

constexpr files::ReplacementRules WRITING_RULES{std::nullopt, true, false};

} // namespace

struct SysFile::State {
    std::optional<files::InputFile> input;
    std::optional<files::Replacement> output;
};

SysFile::SysFile(const CoreString& path, Mode mode, int) : state(std::make_unique<State>()) {
    if (mode == MODE_WRITE)
        state->output.emplace(path.get_data(), WRITING_RULES);
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
    if (!state->input || !state->input->is_open() || !state->input->read(count, bytes))
        return {};
    return CoreString(std::string_view(bytes));
}

bool SysFile::close() {
    const bool was_open = is_opened();
    const bool closed = state->output ? state->output->commit() : was_open;
    state->input.reset();
    return closed;
}
