#include "colorio/ocio/lut_words.h"

#include <array>
#include <cctype>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <string_view>

#include "colorio/ocio/csp_metadata.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/file_state.h"
#include "colorio/ocio/icc_counts.h"
#include "colorio/ocio/types.h"

namespace ocio {

namespace {

/// Longest words that fit: of .spi1d and .spi3d lines, and of the "LUT:" line of Discreet LUTs.
constexpr std::size_t MAX_NUMBER_LENGTH = 63;
constexpr std::size_t MAX_DEPTH_LENGTH = 15;
constexpr std::size_t UNLIMITED = std::string_view::npos;

/// Reads a text byte by byte and finds the first word that some reader would copy beyond its buffer. Every
/// reader may see every file, since OpenColorIO tries them all when the one of the extension fails.
class WordScanner {
public:
    /// False when `c` makes a word too long.
    bool accepts(char c) {
        if (c == '\n')
            end_line();
        else if (std::isspace(static_cast<unsigned char>(c)))
            end_word();
        else
            add_to_word(c);
        return word_length_ <= limit_;
    }

    unsigned long line() const { return line_; }

private:
    void end_line() {
        end_word();
        ++line_;
        words_ = 0;
        limit_ = in_table_ ? MAX_NUMBER_LENGTH : UNLIMITED;
    }

    void end_word() {
        if (word_length_ == 0)
            return;
        if (words_++ == 0)
            note_first_word();
        word_length_ = 0;
    }

    void add_to_word(char c) {
        if (words_ == 0 && word_length_ < first_word_.size())
            first_word_[word_length_] = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        ++word_length_;
        // The opening brace of an .spi1d LUT may have text on its line.
        if (words_ == 0 && word_length_ == 1 && c == '{')
            in_table_ = true;
    }

    void note_first_word() {
        const std::string_view word(first_word_.data(), std::min(word_length_, first_word_.size()));
        if (word == "spilut" && line_ == 1)
            in_table_ = true;
        else if (word.substr(0, 4) == "from")
            limit_ = MAX_NUMBER_LENGTH;
        else if (word.substr(0, 4) == "lut:")
            limit_ = MAX_DEPTH_LENGTH;
    }

    std::array<char, 6> first_word_{};
    std::size_t word_length_ = 0;
    std::size_t words_ = 0;
    std::size_t limit_ = UNLIMITED;
    unsigned long line_ = 1;
    bool in_table_ = false;
};

/// Line of the first word that is too long.
std::optional<unsigned long> find_unreadable_line(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    WordScanner scanner;
    std::array<char, 1 << 16> block;
    while (file.read(block.data(), block.size()), file.gcount() > 0)
        for (const char c : std::string_view(block.data(), static_cast<std::size_t>(file.gcount())))
            if (!scanner.accepts(c))
                return scanner.line();
    return std::nullopt;
}

struct LutError {
    std::string reason;    ///< empty for none
    unsigned int line = 0; ///< from 1; 0 without a line
};

/// What would make one of OpenColorIO's readers fail.
LutError find_error(const std::string& path) {
    if (const std::optional<unsigned long> line = find_unreadable_line(path))
        return {"line " + std::to_string(*line) + " contains a word longer than any number",
                static_cast<unsigned int>(*line)};
    std::ifstream file(path, std::ios::binary);
    if (has_endless_csp_metadata(file))
        return {"its metadata block is not closed"};
    file.clear();
    file.seekg(0);
    return {find_icc_overclaim(file)};
}

/// Files that passed, with their state at that time.
struct ReadableFiles {
    std::mutex mutex;
    std::map<std::string, FileState> states;
};

ReadableFiles& readable_files() {
    static ReadableFiles files;
    return files;
}

} // namespace

void require_readable_lut(const std::string& path) {
    const std::optional<FileState> state = file_state(path);
    if (!state)
        return;
    ReadableFiles& known = readable_files();
    {
        const std::lock_guard lock(known.mutex);
        const auto found = known.states.find(path);
        if (found != known.states.end() && is_unchanged(found->second, state))
            return;
    }
    const LutError error = find_error(path);
    if (!error.reason.empty())
        throw_file_error(diagnostics::Code::LUT_DAMAGED,
                         "'" + path + "' cannot be read as a LUT: " + error.reason, path, error.line);
    const std::lock_guard lock(known.mutex);
    known.states.insert_or_assign(path, *state);
}

} // namespace ocio
