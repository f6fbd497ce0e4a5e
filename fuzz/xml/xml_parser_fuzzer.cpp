// Any bytes as a file and as a text, under any settings: no crash, no leak, and consistent results.

#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/xml/fuzz_settings.h"
#include "xml/xml_encoding.h"
#include "xml/xml_node.h"

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

// A file in memory, that the parser opens by its path.
class ScratchFile {
public:
    ScratchFile()
        : descriptor(memfd_create("fuzz", MFD_CLOEXEC)), path("/proc/self/fd/" + std::to_string(descriptor)) {
    }

    const char* holding(const std::uint8_t* data, std::size_t size) {
        require(ftruncate(descriptor, 0) == 0);
        require(pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
        return path.c_str();
    }

private:
    int descriptor;
    std::string path;
};

void check(const XmlNode& node, const XmlResults& results) {
    const bool is_warning = results.error == XmlError::UNMATCHED_END_TAG_WARNING ||
                            results.error == XmlError::NO_TAG_FOUND_WARNING;
    require(node.is_empty() == (results.error != XmlError::NONE && !is_warning));
    require(results.line >= 0 && results.column >= 0);
    require(!is_warning || (results.line > 0 && results.column > 0));
    int children = 0;
    for (int i = 0; i < node.count_contents(); ++i)
        children += node.get_content(i).kind == XmlContentKind::CHILD ? 1 : 0;
    require(children == node.count_children());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ScratchFile file;
    if (size == 0)
        return 0;
    select_fuzz_settings(data[0]);
    const char* const first_tag = (data[0] & 64) != 0 ? "a" : nullptr;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);

    XmlResults of_text;
    check(XmlNode::parse_string(text.c_str(), first_tag, &of_text), of_text);
    XmlResults of_file;
    check(XmlNode::parse_file(file.holding(data + 1, size - 1), first_tag, &of_file), of_file);
    guess_encoding(text.data(), text.size(), (data[0] & 128) != 0);
    return 0;
}
