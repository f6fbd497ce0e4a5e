#include "host/parser/parser_file.h"

#include <optional>
#include <string>

#include "files/input_file.h"
#include "files/replacement.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "standalone/parser/yaml_limits.h"
#include "standalone/parser/yaml_reader.h"
#include "standalone/parser/yaml_writer.h"

namespace {

constexpr const char* TYPE_ENTRY = "file_type";
constexpr const char* VERSION_ENTRY = "file_version";

// What is wrong with the root entry `name`, which must be `required` unless that is empty.
std::string check_entry(const ParserGroup& root, const char* name, const CoreString& required) {
    const ParserEntry* const entry = root.find_entry(name);
    const CoreString found = entry ? entry->get_string(0) : CoreString();
    if (required.is_empty() || found == required)
        return {};
    return std::string(": ") + name + " is '" + found.get_data() + "', expected '" + required.get_data() +
           "'";
}

} // namespace

struct ParserFile::State {
    std::unique_ptr<ParserGroup> root = std::make_unique<ParserGroup>(nullptr);
    CoreString error;

    bool finish(const CoreString& path, const std::string& reason) {
        error = reason.empty() ? CoreString() : path + CoreString(std::string_view(reason));
        return reason.empty();
    }
};

ParserFile::ParserFile() : state(std::make_unique<State>()) {}

ParserFile::~ParserFile() = default;

namespace {

std::string describe(const std::optional<YamlFault>& fault) {
    return fault ? fault->describe() : std::string();
}

} // namespace

bool ParserFile::read(const CoreString& path, const CoreString& required_type,
                      const CoreString& required_version) {
    auto root = std::make_unique<ParserGroup>(nullptr);
    auto text = files::read_whole(path.get_data(), MAX_FILE_SIZE);
    std::string error = text ? describe(read_yaml(*text, *root)) : ": " + text.get_failure().reason;
    if (error.empty())
        error = check_entry(*root, TYPE_ENTRY, required_type);
    if (error.empty())
        error = check_entry(*root, VERSION_ENTRY, required_version);
    state->root = error.empty() ? std::move(root) : std::make_unique<ParserGroup>(nullptr);
    return state->finish(path, error);
}

bool ParserFile::write(const CoreString& path) {
    const YamlText yaml = write_yaml(*state->root);
    if (!yaml.text)
        return state->finish(path, ": " + yaml.reason);
    files::Replacement file(path.get_data());
    const bool written = file.write(*yaml.text) && file.commit();
    return state->finish(path, written ? "" : ": " + file.get_failure()->reason);
}

const CoreString& ParserFile::get_error() const {
    return state->error;
}

ParserGroup& ParserFile::get_root() {
    return *state->root;
}
