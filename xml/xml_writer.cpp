#include <cerrno>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "files/replacement.h"
#include "xml/node_record.h"
#include "xml/serializer.h"
#include "xml/xml_node.h"
#include "xml/xml_settings.h"

namespace {

using xml::NodeRecord;

constexpr files::ReplacementRules WRITING_RULES{std::nullopt, true, false};

class LengthSink : public xml::TextSink {
public:
    void write(std::string_view piece) override { length += piece.size(); }
    std::size_t length = 0;
};

class BufferSink : public xml::TextSink {
public:
    explicit BufferSink(char* buffer) : next(buffer) {}
    void write(std::string_view piece) override {
        std::memcpy(next, piece.data(), piece.size());
        next += piece.size();
    }

private:
    char* next;
};

class StringSink : public xml::TextSink {
public:
    void write(std::string_view piece) override { text += piece; }
    std::string text;
};

class FileSink : public xml::TextSink {
public:
    explicit FileSink(files::Replacement& replacement) : file(replacement) {}
    void write(std::string_view piece) override { file.write(piece); }

private:
    files::Replacement& file;
};

bool needs_declaration(const NodeRecord& node) {
    if (node.is_declaration)
        return false;
    return node.name != nullptr || node.child_count == 0 || !node.children[0]->is_declaration;
}

// The name under which the current encoding is declared.
const char* declared_encoding(const char* encoding_name) {
    switch (get_xml_settings().encoding) {
    case XmlEncoding::UTF_8:
        return "utf-8";
    case XmlEncoding::SHIFT_JIS:
        return "SHIFT-JIS";
    default:
        return encoding_name != nullptr ? encoding_name : "ISO-8859-1";
    }
}

void write_document(files::Replacement& file, const NodeRecord& top, const char* encoding_name, bool format) {
    const char* encoding = declared_encoding(encoding_name);
    if (get_xml_settings().encoding == XmlEncoding::UTF_8)
        file.write("\xEF\xBB\xBF");
    if (needs_declaration(top)) {
        file.write("<?xml version=\"1.0\" encoding=\"");
        file.write(encoding);
        file.write("\"?>\n");
    }
    const bool has_layout = format && get_xml_settings().drop_white_space;
    FileSink sink(file);
    xml::Serializer(sink, has_layout ? 0 : xml::NO_LAYOUT, encoding).write(top);
}

} // namespace

std::size_t XmlNode::create_string(char* buffer, int format) const {
    if (is_empty())
        return 0;
    LengthSink measured;
    xml::Serializer(measured, format).write(*record);
    if (buffer != nullptr) {
        BufferSink filled(buffer);
        xml::Serializer(filled, format).write(*record);
    }
    return measured.length;
}

std::string XmlNode::create_string(int format) const {
    StringSink sink;
    if (!is_empty())
        xml::Serializer(sink, format).write(*record);
    return std::move(sink.text);
}

XmlError XmlNode::write_to_file(const char* path, const char* encoding_name, bool format) const {
    if (is_empty())
        return XmlError::NONE;
    XmlError error = XmlError::CANNOT_WRITE;
    int reason = ENOMEM;
    try {
        files::Replacement file(path != nullptr ? path : "", WRITING_RULES);
        const bool is_open = file.is_open();
        if (is_open)
            write_document(file, *record, encoding_name, format);
        if (is_open && file.commit())
            return XmlError::NONE;
        error = is_open ? XmlError::CANNOT_WRITE : XmlError::CANNOT_OPEN_FOR_WRITING;
        reason = file.get_failure()->error_number;
    } catch (const std::bad_alloc&) {
    }
    errno = reason;
    return error;
}
