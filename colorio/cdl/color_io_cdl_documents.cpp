#include <cerrno>
#include <charconv>

#include "colorio/cdl/cdl_document.h"
#include "colorio/color_io_cdl_writer.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "diagnostics/file_failure.h"
#include "files/diagnosis.h"
#include "host/sys/sys_filesystem.h"
#include "xml/xml_node.h"

namespace {

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

constexpr char ASC_CDL_NAMESPACE[] = "urn:ASC:CDL:v1.2";

/// One digit after the decimal point, which is '.' in every locale.
CoreString format_number(float value) {
    // The largest float has 39 digits before the point.
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 1).ptr;
    return CoreString(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

CoreString format_triple(const float (&values)[3]) {
    return format_number(values[0]) + " " + format_number(values[1]) + " " + format_number(values[2]);
}

void add_text_element(XmlNode& parent, const char* name, const CoreString& text) {
    parent.add_child(name).add_text(text.get_data());
}

void write_color_correction(XmlNode& correction, const ColorDecisionListDef& def) {
    correction.add_attribute("id", def.name.get_data());
    XmlNode sop = correction.add_child("SOPNode");
    add_text_element(sop, "Slope", format_triple(def.slope));
    add_text_element(sop, "Offset", format_triple(def.offset));
    add_text_element(sop, "Power", format_triple(def.power));
    XmlNode sat = correction.add_child("SATNode");
    add_text_element(sat, "Saturation", format_number(def.saturation));
}

/// `error_number` is the system's; 0 where it has no part in the failure.
void report_unwritable(const CoreString& path, int error_number) {
    const files::Failure failure =
        error_number != 0
            ? files::make_failure(path.get_data(), files::Operation::WRITE, error_number)
            : files::make_refusal(path.get_data(), files::Operation::WRITE, diagnostics::NOT_A_REGULAR_FILE);
    ColorIODiagnostics::report(files::to_diagnostic(failure));
}

} // namespace

void ColorIOManager::read_CDL_from_XML(CoreString path, ColorDecisionListDef& def, bool collection) {
    at_boundary([&] {
        if (!SysFilesystem::file_exists(path))
            return report_unreadable(LOG_ERROR, diagnostics::Code::FILE_MISSING, CoreString(), path);
        XmlNode top;
        if (!parse_CDL_document(path, top))
            return;
        const int passes = collection ? top.count_children("ColorCorrection") : 1;
        for (int i = 0; i < passes; ++i) {
            const XmlNode correction = collection ? top.get_child(i) : top;
            if (correction.is_empty())
                log_missing_node("ColorCorrection", path);
            else
                read_color_correction(correction, path, MissingElement::GO_ON, def);
        }
    });
}

bool ColorIOManager::create_XML_from_CDL(CoreVector<ColorDecisionListDef> cdls, CoreString path,
                                         bool collection) {
    return ColorIOCdlWriter::write_rounded(cdls, path, collection);
}

bool ColorIOCdlWriter::write_rounded(const CoreVector<ColorDecisionListDef>& cdls, const CoreString& path,
                                     bool collection) {
    return at_boundary(false, [&] {
        XmlNode top;
        if (collection) {
            top = XmlNode::create_top_node("ColorCorrectionCollection");
            top.add_attribute("xmlns", ASC_CDL_NAMESPACE);
        }
        for (const ColorDecisionListDef& def : cdls) {
            if (!collection) {
                top = XmlNode::create_top_node("ColorCorrection");
                write_color_correction(top, def);
            } else if (def.name != ColorIOManager::s_default_CDL_name) {
                XmlNode correction = top.add_child("ColorCorrection");
                write_color_correction(correction, def);
            }
        }
        if (top.write_to_file(path.get_data()) == XmlError::NONE)
            return true;
        report_unwritable(path, errno);
        return false;
    });
}
