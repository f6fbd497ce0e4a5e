#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "tests/colorio/custom_space_files.h"
#include "tests/colorio/memory/failing_allocation.h"
#include "tests/colorio/running_module.h"

inline constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

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
