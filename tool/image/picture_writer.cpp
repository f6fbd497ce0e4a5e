#include "tool/image/picture_writer.h"

#include <fstream>
#include <string_view>

#include <fmt/format.h>

#include "tool/exit_code.h"
#include "tool/image/format_abilities.h"

namespace tool {

namespace {

std::vector<OIIO::ImageSpec> get_subimage_specs(const std::vector<PartHeader>& parts) {
    std::vector<OIIO::ImageSpec> specs;
    for (const PartHeader& part : parts)
        if (part.level == 0)
            specs.push_back(part.spec);
    return specs;
}

/// True when the file ends with the IEND chunk, type and checksum (ISO/IEC 15948, 11.2.5).
bool ends_as_png(const std::string& path) {
    const std::string end("IEND\xAE\x42\x60\x82", 8);
    std::string found(end.size(), '\0');
    std::ifstream file(path, std::ios::binary);
    file.seekg(-static_cast<std::streamoff>(end.size()), std::ios::end);
    file.read(found.data(), static_cast<std::streamsize>(found.size()));
    return file && found == end;
}

} // namespace

PictureWriter::PictureWriter(const std::string& path, const std::string& name)
    : path(path), name(name), output(OIIO::ImageOutput::create(path)) {
    if (!output)
        fail(OIIO::geterror());
}

PictureWriter::~PictureWriter() = default;

void PictureWriter::fail(const std::string& fallback) const {
    std::string reason = output ? output->geterror() : "";
    if (reason.empty())
        reason = fallback;
    for (std::size_t place; (place = reason.find(path)) != std::string::npos;)
        reason.replace(place, path.size(), name);
    while (!reason.empty() && reason.back() == '\n')
        reason.pop_back();
    throw CommandError(fmt::format("cannot write '{}': {}", name, reason));
}

const OIIO::ImageSpec& PictureWriter::open_part(const std::vector<PartHeader>& parts, unsigned int index,
                                                const FormatAbilities& abilities) {
    const PartHeader& part = parts[index];
    bool opened;
    if (index == 0) {
        const std::vector<OIIO::ImageSpec> specs = get_subimage_specs(parts);
        opened = specs.size() > 1 && !abilities.appends_subimages
                     ? output->open(path, static_cast<int>(specs.size()), specs.data())
                     : output->open(path, part.spec, OIIO::ImageOutput::Create);
    } else {
        const bool is_level = part.level > 0 && abilities.has_levels;
        opened =
            output->open(path, part.spec,
                         is_level ? OIIO::ImageOutput::AppendMIPLevel : OIIO::ImageOutput::AppendSubimage);
    }
    if (!opened)
        fail("it cannot be opened");
    return output->spec();
}

void PictureWriter::write_part(const PixelBuffer& pixels) {
    if (!output->write_image(OIIO::TypeUnknown, pixels.data()))
        fail("its pixels cannot be written");
}

void PictureWriter::close() {
    if (!output->close())
        fail("it cannot be finished");
    // The PNG writer does not report what a full disk refused.
    if (std::string_view(output->format_name()) == "png" && !ends_as_png(path))
        fail("its end is missing; is the disk full?");
}

} // namespace tool
