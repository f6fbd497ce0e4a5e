#pragma once

#include <string>
#include <vector>

#include "tests/viewer/screen_fixture.h"

/// The viewer's panels, worked with mouse and keys.
class PanelsOfAViewer : public ScreenTest {
protected:
    viewer::ColorSettings settings() const { return model->get_settings(viewer::ViewModel::FIRST); }

    /// Has the CDLs of these names, which change nothing, listed.
    void list_cdls(const std::vector<std::string>& names) {
        std::string library = "<ColorCorrectionCollection>";
        for (const std::string& name : names)
            library += "<ColorCorrection id=\"" + name +
                       "\"><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
                       "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection>";
        model->use_cdl_library(folder.write("names.ccc", library + "</ColorCorrectionCollection>"));
        viewer->act();
    }
    /// The letters of the item of that name in the panels, as bright and dark pixels.
    std::string read_line(const std::string& name) {
        constexpr int LEFT = 10, RIGHT = 140, ABOVE = 6;
        const int middle = static_cast<int>(find(name).y);
        if (middle < ABOVE)
            return "";
        const ShownImage shown = take_screenshot();
        std::string letters;
        for (int y = middle - ABOVE; y < middle + ABOVE; ++y)
            for (int x = LEFT; x < RIGHT; ++x)
                letters += shown.at(x, y)[1] > 160 ? '#' : ' ';
        EXPECT_NE(letters.find('#'), std::string::npos) << "no letters at " << name;
        return letters;
    }
};
