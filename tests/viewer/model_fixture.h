#pragma once

#include <chrono>

#include "diagnostics/failure.h"
#include "tests/viewer/viewer_fixture.h"
#include "viewer/view_model.h"

/// A viewer's model on the configuration of the fixture.
class ViewModelTest : public ViewerTest {
protected:
    static constexpr viewer::ViewModel::Side FIRST = viewer::ViewModel::FIRST;

    ViewModelTest() {
        write_lut(folder, 0.5);
        config = write_config(folder);
        image = folder.file("image.exr");
        write_ramps(image, 4, 4);
        workflow::SessionOptions options;
        options.config_path = config;
        options.no_preferences = true;
        live_config = std::make_unique<workflow::LiveConfig>(options);
        model = std::make_unique<viewer::ViewModel>(*live_config);
        model->open(image);
    }

    /// What the model's conversions make of gray 1.
    float shown_white() {
        float rgba[] = {1, 1, 1, 1};
        model->get_conversion(FIRST)->apply(rgba, 1, 1, model->get_settings(FIRST).exposure);
        return rgba[0];
    }
    /// Waits until files were noticed to have changed.
    void follow() { ASSERT_TRUE(model->follow_changes(std::chrono::seconds(10))); }
    /// The message of what `action` throws.
    template <class Action>
    static std::string message_of(const Action& action) {
        try {
            action();
        } catch (const diagnostics::Failure& error) {
            return error.what();
        }
        return "nothing thrown";
    }

    std::string config;
    std::string image;
    std::unique_ptr<workflow::LiveConfig> live_config;
    std::unique_ptr<viewer::ViewModel> model;
};
