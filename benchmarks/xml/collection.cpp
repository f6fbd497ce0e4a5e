#include "benchmarks/xml/collection.h"

#include <cstdio>

std::string make_collection(int count) {
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                       "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\">\n";
    for (int i = 0; i < count; ++i) {
        const double step = (i % 1000) / 1000.0;
        char correction[640];
        std::snprintf(correction, sizeof(correction),
                      "\t<ColorCorrection id=\"shot_%06d\">\n"
                      "\t\t<SOPNode>\n"
                      "\t\t\t<Slope>%.4f %.4f %.4f</Slope>\n"
                      "\t\t\t<Offset>%.4f %.4f %.4f</Offset>\n"
                      "\t\t\t<Power>%.4f %.4f %.4f</Power>\n"
                      "\t\t</SOPNode>\n"
                      "\t\t<SATNode>\n"
                      "\t\t\t<Saturation>%.4f</Saturation>\n"
                      "\t\t</SATNode>\n"
                      "\t</ColorCorrection>\n",
                      i, 1 + step, 1 + step / 2, 1 - step / 4, step / 8, -step / 8, step / 16, 1 - step / 8,
                      1 + step / 8, 1.0, 1 + step / 2);
        text += correction;
    }
    return text + "</ColorCorrectionCollection>\n";
}
