// Every operation of the module's public classes while memory is short: each allocation that it asks for
// fails once. None may throw, each returns its documented failure, and the module works afterwards.

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_evaluation.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "host/gmath/gmath_vec4.h"
#include "host/of/of_enum.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/colorio/memory/failed_allocation_fixture.h"

namespace {

TEST_F(FailedAllocation, OfAStart) {
    const std::vector<std::string> usual = published();
    // A start that failed may be tried again, on what it left.
    expect_answered_after([this] { stop(); }, [this] { return ColorIO::init(&app); }, false);
    EXPECT_EQ(published(), usual);
}

TEST_F(FailedAllocation, OfAStartWithoutAnApplication) {
    expect_answered_after([this] { stop(); }, [] { return ColorIO::init(nullptr); }, false);
}

TEST_F(FailedAllocation, OfTheParts) {
    expect_answered_after([this] { stop(); }, [this] { return ColorIOManager::static_init(&app); }, false);
    expect_answered([this] { return manager().init(); }, false);
    expect_answered_after([] { ColorIOAutoDetection::destroy(); },
                          [this] { return ColorIOAutoDetection::static_init(&app); }, true);
    expect_answered_after([this] { forget_facade(); }, [] { return ColorIO::get_instance() != nullptr; },
                          false);
}

TEST_F(FailedAllocation, OfASwitchOfTheConfiguration) {
    const auto use = [this](bool file) { manager().use_file_config(file); };
    expect_survived([&] { use(true); }, [this] { return published(); });
    expect_survived([&] { use(false); }, [this] { return published(); });
    app.use_color_space_file = true;
    expect_survived([&] { use(true); }, [this] { return published(); });
    expect_survived([this] { manager().update_file_config_path(); }, [this] { return published(); });
    app.color_space_file_path = path_of("absent.ocio").c_str();
    expect_survived([this] { manager().update_file_config_path(); }, [this] { return published(); });
}

TEST_F(FailedAllocation, OfAConfigurationFromTheEnvironment) {
    ocio_variable.set(path_of("config.ocio"));
    app.use_color_space_file = true;
    app.color_space_file_path = "";
    expect_survived([this] { manager().update_file_config_path(); }, [this] { return published(); });
}

TEST_F(FailedAllocation, OfTheHandlers) {
    ColorIO& facade = *ColorIO::get_instance();
    const CoreString event = "event";
    const EventObject::EventInfo info{event, nullptr};
    app.use_color_space_by_extension_file = 1;
    const auto state = [this] { return published(); };
    expect_survived([&] { facade.on_use_ocio_config_file_changed(app, info, nullptr); }, state);
    expect_survived([&] { facade.on_config_file_path_changed(app, info, nullptr); }, state);
    expect_survived([&] { facade.on_cdl_library_path_changed(app, info, nullptr); }, state);
    expect_survived([&] { facade.on_default_color_space_changed(app, info, nullptr); }, state);
    expect_survived([&] { facade.on_ocio_config_changed(app, info, nullptr); }, state);
    expect_survived([&] { facade.on_color_space_by_extensions_config_file_changed(app, info, nullptr); },
                    state);
}

TEST_F(FailedAllocation, OfInspections) {
    const CoreString role = "scene_linear", srgb = "sRGB", linear = "linear",
                     none = "a look that is not there", display = "Tavelion";
    expect_answered([] { return ColorIOInspection::get_color_spaces().get_count(); }, 0u);
    expect_answered([] { return ColorIOInspection::get_named_transforms().get_count(); }, 0u);
    expect_answered([] { return ColorIOInspection::get_looks().get_count(); }, 0u);
    expect_answered([] { return ColorIOInspection::get_view_transforms().get_count(); }, 0u);
    expect_answered([&] { return ColorIOInspection::has_role(role); }, false);
    expect_answered([&] { return ColorIOInspection::get_view(display, srgb).color_space; }, CoreString());
    expect_answered([] { return ColorIOInspection::get_hidden_views().get_count(); }, 0u);
    expect_answered([&] { return ColorIOInspection::try_view_transform(none); }, false);
}

TEST_F(FailedAllocation, OfAClassDescription) {
    ColorIO& facade = *ColorIO::get_instance();
    expect_answered([&] { return &facade.get_class_info(); }, &EventObject::class_info());
    expect_answered([] { return &ColorIO::class_info(); }, &EventObject::class_info());
}

/// A copy is made whole or not at all.
TEST_F(FailedAllocation, OfACopyLeavesTheOriginal) {
    const std::vector<std::string> usual = published();
    bool struck = true;
    for (unsigned int number = 1; struck; ++number) {
        const FailingAllocation failing(number);
        try {
            const ColorIOManager copy(manager());
        } catch (const std::bad_alloc&) {
        }
        struck = failing.has_struck();
    }
    EXPECT_EQ(published(), usual);
}

class Listener : public EventObject {
public:
    void listen(EventObject& sender) { connect(sender, "event", &Listener::count, nullptr); }
    void count(AppBase&, const EventInfo&, OfObject*) { ++calls; }
    unsigned int calls = 0;
};

TEST(FailedConnection, IsNotMadeHalf) {
    const CoreString event = "event";
    bool struck = true;
    for (unsigned int number = 1; struck; ++number) {
        Listener listener;
        EventObject sender;
        bool connected = true;
        {
            const FailingAllocation failing(number);
            try {
                listener.listen(sender);
            } catch (const std::bad_alloc&) {
                connected = false;
            }
            struck = failing.has_struck();
        }
        ASSERT_EQ(connected, !struck);
        sender.raise_event(event);
        ASSERT_EQ(listener.calls, connected ? 1u : 0u) << "allocation " << number;
        listener.disconnect(sender);
    }
}

TEST(FailedConnection, LeavesWhicheverObjectLastsLonger) {
    for (unsigned int number = 1; number < 10; ++number)
        for (const bool sender_goes_first : {true, false}) {
            auto sender = std::make_unique<EventObject>();
            auto listener = std::make_unique<Listener>();
            {
                const FailingAllocation failing(number);
                try {
                    listener->listen(*sender);
                } catch (const std::bad_alloc&) {
                }
            }
            if (sender_goes_first)
                sender.reset();
            listener.reset();
        }
}

} // namespace
