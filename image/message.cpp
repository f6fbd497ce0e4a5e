#include "image/message.h"

#include <limits>

namespace image {

namespace {

/// The numbers of a spec, in their order in a message.
constexpr int OIIO::ImageSpec::*NUMBERS[] = {
    &OIIO::ImageSpec::x,           &OIIO::ImageSpec::y,
    &OIIO::ImageSpec::z,           &OIIO::ImageSpec::width,
    &OIIO::ImageSpec::height,      &OIIO::ImageSpec::depth,
    &OIIO::ImageSpec::full_x,      &OIIO::ImageSpec::full_y,
    &OIIO::ImageSpec::full_z,      &OIIO::ImageSpec::full_width,
    &OIIO::ImageSpec::full_height, &OIIO::ImageSpec::full_depth,
    &OIIO::ImageSpec::tile_width,  &OIIO::ImageSpec::tile_height,
    &OIIO::ImageSpec::tile_depth,  &OIIO::ImageSpec::alpha_channel,
    &OIIO::ImageSpec::z_channel,
};

/// TypeDesc as a plain value. TypeDesc itself has constructors and cannot be copied as bytes.
struct PlainType {
    unsigned char basetype, aggregate, semantics;
    int array_length;
};

bool is_plain(OIIO::TypeDesc type) {
    return type.basetype > OIIO::TypeDesc::NONE && type.basetype < OIIO::TypeDesc::STRING;
}

void add_type(MessageWriter& message, OIIO::TypeDesc type) {
    PlainType plain = {};
    plain.basetype = type.basetype;
    plain.aggregate = type.aggregate;
    plain.semantics = type.vecsemantics;
    plain.array_length = type.arraylen;
    message.add(plain);
}

OIIO::TypeDesc get_type(MessageReader& message) {
    const auto plain = message.get<PlainType>();
    if (plain.basetype > OIIO::TypeDesc::STRING || plain.array_length < 0)
        throw MessageError("unknown type");
    return OIIO::TypeDesc(static_cast<OIIO::TypeDesc::BASETYPE>(plain.basetype),
                          static_cast<OIIO::TypeDesc::AGGREGATE>(plain.aggregate),
                          static_cast<OIIO::TypeDesc::VECSEMANTICS>(plain.semantics), plain.array_length);
}

std::size_t count_values(const OIIO::ParamValue& attribute) {
    return static_cast<std::size_t>(attribute.nvalues()) * attribute.type().numelements() *
           attribute.type().aggregate;
}

} // namespace

void MessageWriter::add_bytes(const void* source, std::size_t size) {
    const char* const begin = static_cast<const char*>(source);
    bytes.insert(bytes.end(), begin, begin + size);
}

void MessageWriter::add_text(const std::string& text) {
    add(text.size());
    add_bytes(text.data(), text.size());
}

void MessageWriter::add_spec(const OIIO::ImageSpec& spec) {
    for (const auto number : NUMBERS)
        add(spec.*number);
    add(spec.nchannels);
    add(static_cast<unsigned char>(spec.deep));
    add_type(*this, spec.format);
    add(spec.channelformats.size());
    for (const OIIO::TypeDesc& type : spec.channelformats)
        add_type(*this, type);
    add(spec.channelnames.size());
    for (const std::string& name : spec.channelnames)
        add_text(name);
    std::size_t count = 0;
    for (const OIIO::ParamValue& attribute : spec.extra_attribs)
        count += is_plain(attribute.type()) || attribute.type().basetype == OIIO::TypeDesc::STRING;
    add(count);
    for (const OIIO::ParamValue& attribute : spec.extra_attribs)
        add_attribute(attribute);
}

void MessageWriter::add_attribute(const OIIO::ParamValue& attribute) {
    const OIIO::TypeDesc type = attribute.type();
    const bool is_text = type.basetype == OIIO::TypeDesc::STRING;
    if (!is_text && !is_plain(type))
        return;
    add_text(attribute.name().string());
    add_type(*this, type);
    add(attribute.nvalues());
    if (!is_text)
        return add_bytes(attribute.data(), static_cast<std::size_t>(attribute.datasize()));
    const auto* texts = static_cast<const OIIO::ustring*>(attribute.data());
    for (std::size_t i = 0; i < count_values(attribute); ++i)
        add_text(texts[i].string());
}

const char* MessageReader::take(std::size_t size) {
    if (size > bytes.size() - position)
        throw MessageError("truncated message");
    position += size;
    return bytes.data() + position - size;
}

std::size_t MessageReader::get_count(std::size_t entry_bytes) {
    const auto count = get<std::size_t>();
    if (count > (bytes.size() - position) / entry_bytes)
        throw MessageError("truncated message");
    return count;
}

std::string MessageReader::get_text() {
    const auto size = get_count(1);
    return std::string(take(size), size);
}

OIIO::ImageSpec MessageReader::get_spec() {
    OIIO::ImageSpec spec;
    for (const auto number : NUMBERS)
        spec.*number = get<int>();
    spec.nchannels = get<int>();
    spec.deep = get<unsigned char>() != 0;
    spec.format = get_type(*this);
    for (std::size_t left = get_count(sizeof(PlainType)); left > 0; --left)
        spec.channelformats.push_back(get_type(*this));
    for (std::size_t left = get_count(sizeof(std::size_t)); left > 0; --left)
        spec.channelnames.push_back(get_text());
    for (std::size_t left = get_count(sizeof(std::size_t)); left > 0; --left)
        get_attribute(spec);
    return spec;
}

void MessageReader::get_attribute(OIIO::ImageSpec& spec) {
    const std::string name = get_text();
    const OIIO::TypeDesc type = get_type(*this);
    const auto count = get<int>();
    // Reject damaged messages whose sizes would overflow.
    if (count < 1 || type.aggregate < 1 || type.aggregate > OIIO::TypeDesc::MATRIX44 ||
        type.basetype <= OIIO::TypeDesc::NONE ||
        type.size() > std::numeric_limits<std::size_t>::max() / (static_cast<std::size_t>(count) + 1))
        throw MessageError("invalid size of an attribute");
    const auto values = static_cast<std::size_t>(count);
    if (type.basetype != OIIO::TypeDesc::STRING) {
        spec.extra_attribs.emplace_back(name, type, count, take(type.size() * values));
        return;
    }
    std::vector<OIIO::ustring> texts;
    const std::size_t total = values * type.numelements() * type.aggregate;
    if (total > (bytes.size() - position) / sizeof(std::size_t))
        throw MessageError("truncated message");
    for (std::size_t i = 0; i < total; ++i)
        texts.emplace_back(get_text());
    spec.extra_attribs.emplace_back(name, type, count, texts.data());
}

} // namespace image
