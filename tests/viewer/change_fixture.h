#pragma once

#include <memory>
#include <string>

#include "tests/viewer/model_fixture.h"

/// A CDL library of one correction, "grade".
inline std::string make_library(const std::string& slope) {
    return "<ColorCorrectionCollection><ColorCorrection id=\"grade\"><SOPNode><Slope>" + slope +
           "</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
           "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection></ColorCorrectionCollection>";
}

/// A model whose files change.
class ModelThatFollowsChanges : public ViewModelTest {
protected:
    void restart(const workflow::SessionOptions& options) {
        model = nullptr;
        live_config = nullptr; // There can be one at a time.
        live_config = std::make_unique<workflow::LiveConfig>(options);
        model = std::make_unique<viewer::ViewModel>(*live_config);
        model->open(image);
    }
};
