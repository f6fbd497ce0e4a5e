#include "image/picture_writer.h"

#include <string_view>

#include <fmt/format.h>

#include "image/format_abilities.h"
#include "image/written_file.h"
#include "tool/exit_code.h"

namespace tool {

namespace {

/// The writers of some formats open files by their paths.
constexpr files::ReplacementRules PLACE_RULES{std::nullopt, false, true};

std::vector<OIIO::ImageSpec> get_subimage_specs(const std::vector<PartHeader>& parts) {
    std::vector<OIIO::ImageSpec> specs;
    for (const PartHeader& part : parts)
        if (part.level == 0)
            specs.push_back(part.spec);
    return specs;
}

/// TIFF goes back to its directory to add metadata, and its writer does not read through a proxy.
bool reads_while_it_writes(const OIIO::ImageOutput& output) {
    return std::string_view(output.format_name()) == "tiff";
}

} // namespace

PictureWriter::PictureWriter(const std::string& path)
    : place(path, PLACE_RULES), name(path), path(place.get_temporary_path()) {
    if (!place.is_open())
        throw CommandError(place.get_failure()->describe());
    output = OIIO::ImageOutput::create(path);
    if (!output)
        fail(OIIO::geterror());
}

PictureWriter::~PictureWriter() = default;

void PictureWriter::fail(std::string reason) const {
    for (std::size_t place; (place = reason.find(path)) != std::string::npos;)
        reason.replace(place, path.size(), name);
    while (!reason.empty() && reason.back() == '\n')
        reason.pop_back();
    throw CommandError(fmt::format("cannot write '{}': {}", name, reason));
}

void PictureWriter::fail_with_format(const std::string& fallback) const {
    const std::string of_format = output->geterror();
    const std::string of_file = file ? file->get_failure() : "";
    fail(!of_file.empty() ? of_file : !of_format.empty() ? of_format : fallback);
}

bool PictureWriter::open_first_part(const std::vector<PartHeader>& parts, const FormatAbilities& abilities) {
    const std::vector<OIIO::ImageSpec> specs = get_subimage_specs(parts);
    // OpenEXR, the one format that wants to know all parts in advance, then opens the file itself.
    if (specs.size() > 1 && !abilities.appends_subimages)
        return output->open(path, static_cast<int>(specs.size()), specs.data());
    if (output->supports("ioproxy") && !reads_while_it_writes(*output))
        output->set_ioproxy(&file.emplace(path));
    return output->open(path, parts.front().spec, OIIO::ImageOutput::Create);
}

const OIIO::ImageSpec& PictureWriter::open_part(const std::vector<PartHeader>& parts, unsigned int index,
                                                const FormatAbilities& abilities) {
    const PartHeader& part = parts[index];
    bool opened;
    if (index == 0) {
        opened = open_first_part(parts, abilities);
    } else {
        const bool is_level = part.level > 0 && abilities.has_levels;
        opened =
            output->open(path, part.spec,
                         is_level ? OIIO::ImageOutput::AppendMIPLevel : OIIO::ImageOutput::AppendSubimage);
    }
    if (!opened)
        fail_with_format("it cannot be opened");
    ++part_count;
    return output->spec();
}

void PictureWriter::write_part(const PixelBuffer& pixels) {
    // Not every writer takes the unknown type for "as the file has it", which channels of different types
    // need.
    const OIIO::ImageSpec& spec = output->spec();
    const OIIO::TypeDesc type = spec.channelformats.empty() ? spec.format : OIIO::TypeDesc(OIIO::TypeUnknown);
    write_part_as(type, pixels);
}

void PictureWriter::write_part_as(OIIO::TypeDesc type, const PixelBuffer& pixels) {
    if (!output->write_image(type, pixels.data()))
        fail_with_format("its pixels cannot be written");
}

void PictureWriter::close() {
    if (!output->close())
        fail_with_format("it cannot be finished");
    output.reset(); // a writer of several levels finishes its file only then
    const std::string reason = file ? file->finish() : find_damage(path, part_count);
    if (!reason.empty())
        fail(reason);
    if (!place.commit())
        throw CommandError(place.get_failure()->describe());
}

} // namespace tool
