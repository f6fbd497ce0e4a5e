#include "colorio/ocio/cdl_document.h"

#include <locale>
#include <sstream>

#include "colorio/ocio/guarded.h"
#include "colorio/ocio/transform.h"

namespace ocio {

namespace {

constexpr char CORRECTION_FORMAT[] = "ColorCorrection";
constexpr char COLLECTION_FORMAT[] = "ColorCorrectionCollection";

CDLTransformRcPtr make_transform(const CdlNumbers& numbers) {
    const CDLTransformRcPtr transform = library::CDLTransform::Create();
    transform->setID(numbers.id.c_str());
    transform->setSlope(numbers.slope);
    transform->setOffset(numbers.offset);
    transform->setPower(numbers.power);
    transform->setSat(numbers.saturation);
    return transform;
}

} // namespace

std::string write_cdl_document(const std::vector<CdlNumbers>& corrections, bool is_collection) {
    return guarded([&] {
        const GroupTransformRcPtr group = library::GroupTransform::Create();
        for (const CdlNumbers& numbers : corrections)
            group->appendTransform(make_transform(numbers));
        std::ostringstream document;
        document.imbue(std::locale::classic());
        group->write(library::Config::CreateRaw(), is_collection ? COLLECTION_FORMAT : CORRECTION_FORMAT,
                     document);
        return document.str();
    });
}

} // namespace ocio
