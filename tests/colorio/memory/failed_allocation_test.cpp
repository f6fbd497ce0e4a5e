// Every operation of the module's public classes while memory is short: each allocation that it asks for
// fails once. None may throw, each returns its documented failure, and the module works afterwards.

#include <filesystem>
#include <memory>
#include <optional>
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
#include "tests/colorio/custom_space_files.h"
#include "tests/colorio/memory/failing_allocation.h"
#include "tests/colorio/running_module.h"

namespace {

constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

using CdlDef = ColorIOManager::ColorDecisionListDef;
using SpaceDef = ColorIOManager::ColorSpaceDef;

// Names handed over by value are short enough for a string to hold them without an allocation of the
// caller's.
class FailedAllocation : public RunningModule {
protected:
    void SetUp() override {
        RunningModule::SetUp();
        if (HasFatalFailure())
            return;
        write_file("lut.spi1d", lut_text(0.5));
        write_file("library.ccc",
                   collection_text(correction_text("warm", "2") + correction_text("cool", "0.5")));
        write_file("own.ccc", collection_text(correction_text("warm", "2")));
        app.cdl_library_file_path = path_of("library.ccc").c_str();
        app.color_space_by_extension_file_path =
            write_file("mapping.yaml", "Scans: {extensions: \"dpx, cin\", color_space: film}\n").c_str();
        want_file(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES));
        app.use_color_space_file = false;
    }

    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }
    ColorIOAutoDetection& detector() { return *ColorIOAutoDetection::get_instance(); }

    CdlDef cdl(const char* name, const char* file = "") {
        return {name, file, "warm", {2, 2, 2}, {0, 0, 0}, {1, 1, 1}, 0.5f, false};
    }
    CoreVector<SpaceDef> own_spaces() {
        CoreVector<SpaceDef> spaces = manager().get_tavelion_color_spaces();
        spaces.append(space_record("own", path_of("lut.spi1d"), path_of("library.ccc"), "warm"));
        return spaces;
    }
    CoreVector<CdlDef> own_cdls() {
        CoreVector<CdlDef> list;
        list.append(cdl("numbers"));
        list.append(cdl("filed", path_of("own.ccc").c_str()));
        return list;
    }

    /// Has each allocation of `call` fail in turn, after `prepare`. Its answer must be `failure`, or what it
    /// answers with all the memory that it wants where it gets by without; and the next call must answer as
    /// if nothing had happened.
    template <class Prepare, class Call, class Failure>
    void expect_answered_after(Prepare prepare, Call call, const Failure& failure) {
        prepare();
        const auto usual = call();
        for (const unsigned int number : record_allocations(prepare, call)) {
            prepare();
            std::optional<std::decay_t<decltype(call())>> answer;
            {
                const FailingAllocation failing(number);
                try {
                    answer = call();
                } catch (...) {
                }
            }
            ASSERT_TRUE(answer) << "threw at allocation " << number;
            EXPECT_TRUE(*answer == failure || *answer == usual) << "at allocation " << number;
            prepare();
            EXPECT_TRUE(call() == usual) << "after allocation " << number;
            take_log();
            if (HasFailure())
                return;
            RecordProperty("failed_allocations", ++failed_allocations);
        }
    }
    template <class Prepare, class Call>
    std::vector<unsigned int> record_allocations(Prepare prepare, Call call) {
        prepare();
        AllocationRecord record;
        call();
        return record.stop();
    }
    template <class Call, class Failure>
    void expect_answered(Call call, const Failure& failure) {
        expect_answered_after([] {}, call, failure);
    }
    /// For operations without a result: they must not throw, and `state` must be as usual afterwards.
    template <class Call, class State>
    void expect_survived(Call call, State state) {
        call();
        const auto usual = state();
        const auto call_and_answer = [&] {
            call();
            return true;
        };
        expect_answered(call_and_answer, true);
        EXPECT_EQ(state(), usual);
    }

    int failed_allocations = 0; ///< For the record of the test.

    void stop() {
        ColorIO::destroy();
        ColorIOAutoDetection::destroy();
        forget_facade();
    }
    std::vector<std::string> published() {
        std::vector<std::string> all = strings(ColorIO::get_color_space_names());
        for (const CoreBasicArray<CoreString>* list :
             {&ColorIO::get_display_view_names(), &manager().get_CDL_names()})
            for (const std::string& name : strings(*list))
                all.push_back(name);
        return all;
    }
};

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

TEST_F(FailedAllocation, OfNames) {
    expect_answered([] { return ColorIO::color_space_exists("Tavelion|sRGB"); }, false);
    expect_answered([] { return ColorIO::display_view_exists("Tavelion.sRGB"); }, false);
    const CoreString label = "Tavelion|Cineon";
    const CoreString long_name = "a name that no string holds without memory";
    expect_answered([&] { return ColorIO::get_color_space_index(label); }, NOT_FOUND);
    expect_answered([&] { return ColorIO::get_color_space_index(long_name); }, NOT_FOUND);
    expect_answered([] { return ColorIO::get_color_space_name(1); }, CoreString());
    expect_answered([&] { return ColorIO::get_full_color_space_name(long_name); }, CoreString());
    expect_answered([&] { return manager().get_full_color_space_name("Cineon"); }, CoreString("Cineon"));
    const CoreString view_label = "Tavelion.Cineon";
    CoreString display, view;
    expect_answered([&] { return ColorIO::get_display_view(view_label, display, view); }, false);
    expect_answered([] { return ColorIO::get_default_display_view(); }, CoreString());
    expect_answered([&] { return ColorIO::get_default_display_view(display, view); }, false);
    expect_answered([&] { return ColorIO::get_color_space_from_display_view("Tavelion.sRGB"); },
                    CoreString());
    expect_answered([] { return ColorIO::get_color_space_names().get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_display_view_names().get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_role_color_space(0).get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_ROLE_SCENE_LINEAR().get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_default_color_picker_space_name().get_count(); }, 0u);
}

TEST_F(FailedAllocation, OfLongDefaultNames) {
    const std::string long_name = "a default name that no string holds without memory";
    ColorIOManager::s_default_color_space_name = long_name.c_str();
    const CoreString usual = std::exchange(ColorIOManager::s_default_CDL_name, long_name.c_str());
    expect_answered([] { return ColorIO::get_default_color_space_name(); }, CoreString());
    expect_answered([] { return ColorIO::get_default_CDL_name(); }, CoreString());
    ColorIOManager::s_default_CDL_name = usual;
}

TEST_F(FailedAllocation, OfRolesAndDefaults) {
    app.use_color_space_file = true;
    const auto state = [this] { return str(manager().get_role_color_space(0)); };
    expect_survived([this] { manager().set_role_color_space(0); }, state);
    expect_survived([this] { manager().set_default_color_space_name(true); }, state);
    expect_survived([this] { manager().set_default_color_space_name(false); }, state);
    app.default_color_space_name = "a default name that no string holds without memory";
    expect_survived([this] { manager().update_default_color_space_name(); }, state);
}

TEST_F(FailedAllocation, OfNamesOfEarlierVersions) {
    expect_answered([] { return ColorIO::is_legacy_builtin_color_space("Any|Cineon"); }, false);
    expect_answered([] { return ColorIO::convert_legacy_builtin_color_space("Family|sRGB"); }, CoreString());
    expect_answered(
        [] { return ColorIO::convert_legacy_widget_display_color_space_to_display_view("Cineon"); },
        CoreString());
    for (const char* name : {"Tavelion|Cineon", "linear", "Any|other"})
        expect_answered(
            [&] { return ColorIO::convert_legacy_preferences_display_color_space_to_display_view(name); },
            CoreString());
}

TEST_F(FailedAllocation, OfCustomColorSpaces) {
    const CoreVector<SpaceDef> spaces = own_spaces();
    expect_survived([&] { manager().set_tavelion_config(spaces); }, [this] { return published(); });
    EXPECT_EQ(manager().get_tavelion_color_spaces().get_count(), spaces.get_count());
}

TEST_F(FailedAllocation, OfACustomColorSpaceLosesNoRecord) {
    const CoreVector<SpaceDef> spaces = own_spaces();
    manager().set_tavelion_config(spaces);
    const auto set = [&] { manager().set_tavelion_config(spaces); };
    for (const unsigned int number : record_allocations([] {}, set)) {
        {
            const FailingAllocation failing(number);
            set();
        }
        ASSERT_EQ(manager().get_tavelion_color_spaces().get_count(), spaces.get_count()) << number;
    }
}

TEST_F(FailedAllocation, OfCdls) {
    const CoreVector<CdlDef> list = own_cdls();
    const auto state = [this] { return published(); };
    expect_survived([&] { manager().set_tavelion_config(list); }, state);
    expect_survived([this] { manager().update_file_cdl_library_path(); }, state);
    const CdlDef warm = cdl("input_local_CDL");
    expect_answered([&] { return manager().add_local_CDL(CdlDef(warm)); }, false);
    const CoreString name = "numbers";
    expect_answered([&] { return ColorIO::get_CDL_index(name); }, NOT_FOUND);
    expect_answered([] { return ColorIO::get_CDL_name(0); }, CoreString());
}

TEST_F(FailedAllocation, OfALocalCdlLeavesItsNumbers) {
    manager().set_tavelion_config(own_cdls());
    ColorIOConverter converter;
    CdlDef local = cdl("input_local_CDL");
    local.slope[0] = 4;
    const auto add = [&] { manager().add_local_CDL(local); };
    for (const unsigned int number : record_allocations([] {}, add)) {
        {
            const FailingAllocation failing(number);
            add();
        }
        ASSERT_TRUE(manager().add_local_CDL(cdl("input_local_CDL")));
        GMathVec4<float> pixel(0.25f, 0.25f, 0.25f, 1);
        ASSERT_TRUE(converter.configure_CDL("No CDL", "input_local_CDL"));
        ASSERT_TRUE(converter.convert_pixel(pixel));
        ASSERT_EQ(pixel[0], 0.5f) << number;
    }
}

TEST_F(FailedAllocation, OfCdlDocuments) {
    const std::filesystem::path old_place = std::filesystem::current_path();
    std::filesystem::current_path(folder.get_path());
    const CoreString read = "library.ccc", written = "written.ccc";
    CdlDef def = cdl("read");
    for (const bool collection : {true, false}) {
        expect_survived([&] { manager().read_CDL_from_XML(read, def, collection); },
                        [&] { return def.slope[0]; });
        CoreVector<CdlDef> list;
        CoreString path;
        const auto prepare = [&] {
            list = own_cdls();
            path = written;
        };
        expect_answered_after(
            prepare,
            [&] { return manager().create_XML_from_CDL(std::move(list), std::move(path), collection); },
            false);
    }
}

TEST_F(FailedAllocation, OfPreferences) {
    manager().set_tavelion_config(own_cdls());
    ParserEntry saved("colors");
    ASSERT_TRUE(ColorIO::save_config(&saved));
    ParserEntry entry("colors");
    expect_answered([&] { return ColorIO::save_config(&entry); }, true);
    expect_answered_after([&] { entry.reset(); }, [&] { return manager().save_config(&entry); }, false);
    expect_answered_after([&] { entry.reset(); }, [&] { return detector().save_config(&entry); }, false);
    const auto restart = [this] {
        stop();
        ASSERT_TRUE(ColorIO::init(&app));
    };
    expect_answered_after(
        restart, [&] { return ColorIO::load_config(&saved); }, true);
    expect_answered_after(
        restart, [&] { return manager().load_config(&saved); }, false);
    expect_answered_after(
        restart, [&] { return detector().load_config(&saved); }, false);
}

TEST_F(FailedAllocation, OfConfiguringAConverter) {
    manager().set_tavelion_config(own_cdls());
    ColorIOConverter converter;
    const CoreString srgb = "Tavelion|sRGB", linear = "linear", warm = "numbers", filed = "filed",
                     unknown = "a name that no string holds without memory", display = "Tavelion",
                     view = "sRGB", default_linear = ColorIO::s_default_scene_linear;
    expect_answered([&] { return converter.configure(srgb, linear); }, false);
    expect_answered([&] { return converter.configure(unknown, linear); }, false);
    expect_answered([&] { return converter.configure_CDL(warm, filed); }, false);
    expect_answered([&] { return converter.configure_CDL(unknown, filed); }, false);
    expect_answered([&] { return converter.configure_for_display(linear, display, view); }, false);
    expect_answered([&] { return converter.configure_for_display("linear", "Tavelion.sRGB"); }, false);
    expect_answered([&] { return converter.get_color_space(default_linear); }, CoreString());
    expect_answered([&] { return ColorIOConverter().configure(srgb, linear); }, false);
}

TEST_F(FailedAllocation, OfConfiguringLeavesNoOldConversion) {
    const CoreString srgb = "sRGB", cineon = "Cineon", linear = "linear";
    ColorIOConverter converter;
    const auto configure = [&] { converter.configure(cineon, linear); };
    for (const unsigned int number : record_allocations([] {}, configure)) {
        ASSERT_TRUE(converter.configure(srgb, linear));
        bool configured = true;
        {
            const FailingAllocation failing(number);
            configured = converter.configure(cineon, linear);
        }
        ASSERT_EQ(converter.is_configured(), configured) << number;
        take_log();
    }
}

TEST_F(FailedAllocation, OfConverting) {
    for (const bool own_code : {true, false}) {
        ColorIOEvaluation::set_vector_code(own_code);
        ColorIOConverter converter;
        ASSERT_TRUE(converter.configure("sRGB", "linear"));
        GMathVec4<float> pixel(0.5f, 0.5f, 0.5f, 1);
        std::vector<float> image(64 * 4, 0.5f);
        float* const plane = image.data();
        expect_answered([&] { return converter.convert_pixel(pixel); }, false);
        expect_answered([&] { return converter.convert_buffer(image.data(), 8, 8, 4); }, false);
        expect_answered(
            [&] { return converter.convert_buffers(plane, plane + 64, plane + 128, nullptr, 8, 8); }, false);
        expect_answered(
            [&] {
                CoreString text;
                CoreArray<float> table;
                ColorIOConverter fresh;
                return fresh.configure("sRGB", "linear") &&
                       fresh.get_gpu_shader_data(text, table, ColorIOConverter::GLSL_VERSION_CORE);
            },
            false);
        ColorIOEvaluation::Explanation explanation;
        expect_answered([&] { return ColorIOEvaluation::explain(converter, pixel, explanation); }, false);
    }
    ColorIOEvaluation::set_vector_code(true);
}

TEST_F(FailedAllocation, OfConvertingThroughTheFacade) {
    manager().set_tavelion_config(own_cdls());
    const CoreString srgb = "sRGB", linear = "linear", warm = "numbers", none = "No CDL";
    std::vector<float> image(64 * 4, 0.5f);
    float* const r = image.data();
    float *const g = r + 64, *const b = g + 64;
    expect_answered([&] { return ColorIO::convert_buffer(r, 8, 8, 4, linear, srgb); }, false);
    expect_answered([&] { return ColorIO::convert_buffers(r, g, b, nullptr, 8, 8, linear, srgb); }, false);
    expect_answered([&] { return ColorIO::convert_CDL_buffers(r, g, b, nullptr, 8, 8, warm, none); }, false);
}

TEST_F(FailedAllocation, OfTheFormats) {
    const CoreString extension = "EXR", format = "a format that no string holds without memory",
                     extensions = "first extension, second extension", space = "sRGB";
    expect_answered([&] { return ColorIO::get_instance()->get_default_color_space_from_ext(extension); },
                    CoreString());
    const auto state = [this] { return detector().get_categories_count() > 9u; };
    expect_survived([&] { detector().add_file_format(format, extensions, space); }, state);
    expect_answered([&] { return detector().get_file_format(9); }, CoreString());
    expect_answered([&] { return detector().get_extensions(9); }, CoreString());
    expect_answered([&] { return detector().get_color_space(9); }, CoreString());
    for (const CoreString& name : {format, CoreString("not listed")}) {
        expect_answered([&] { return detector().get_extension_from_file_format(name); }, CoreString());
        expect_answered([&] { return detector().get_default_color_space_from_file_format(name); },
                        CoreString());
    }
    for (const unsigned int row : {0u, 1000u, NOT_FOUND}) {
        expect_survived([&] { detector().set_file_format(row, format); }, state);
        expect_survived([&] { detector().set_extension_from_file_format(row, extensions); }, state);
        expect_survived([&] { detector().set_default_color_space_from_file_format(row, space); }, state);
    }
    expect_survived([&] { detector().init_default_color_spaces(); }, state);
    for (unsigned int row = 0; row < detector().get_categories_count(); ++row)
        EXPECT_FALSE(detector().get_color_space(row).is_empty()) << "rows are whole";
    expect_survived([this] { detector().remove_file_format(1); }, state);
}

TEST_F(FailedAllocation, OfTheMappingFile) {
    const CoreString path = app.color_space_by_extension_file_path;
    expect_answered([&] { return detector().build_from_file(path); }, false);
    expect_answered([&] { return detector().check_mappings(); }, false);
    for (const bool use : {true, false})
        expect_survived([&] { detector().use_file_config(use); },
                        [&] { return detector().is_file_config(); });
    const CoreString damaged = write_file("damaged.yaml", "a: [").c_str();
    expect_answered([&] { return detector().build_from_file(damaged); }, false);
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
    expect_answered([&] { return ColorIOInspection::try_conversion(srgb, linear); }, false);
    expect_answered([&] { return ColorIOInspection::try_look(none); }, false);
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
