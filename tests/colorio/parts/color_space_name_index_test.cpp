#include "colorio/names/color_space_name_index.h"

#include <gtest/gtest.h>

#include "colorio/color_io_constants.h"
#include "host/of/of_enum.h"
#include "host/of/of_object_factory.h"
#include "standalone/standalone_app.h"

namespace {

class ColorSpaceNameIndices : public testing::Test {
protected:
    ColorSpaceNameIndices() : labels(*app.get_object_factory().add_enum("color_space", 0xFFFFFFFF)) {
        labels.set_separator('|');
    }

    void add(std::initializer_list<const char*> names) {
        CoreVector<CoreString> list;
        CoreVector<unsigned int> values;
        for (const char* name : names) {
            values.append(list.get_count());
            list.append(name);
        }
        labels.add_values(list, values);
    }

    StandaloneApp app;
    OfEnum& labels;
};

TEST_F(ColorSpaceNameIndices, FindTheFirstExactAndTheLastInAnyCase) {
    add({"Tavelion|sRGB", "Show|srgb", "lin", "Other|sRGB"});
    const ColorSpaceNameIndex index(labels);
    EXPECT_EQ(index.find_first_exact("sRGB"), 0u);
    EXPECT_EQ(index.find_first_exact("srgb"), 1u);
    EXPECT_EQ(index.find_last_ignoring_case("SRGB"), 3u);
    EXPECT_EQ(index.find_last_ignoring_case("AnyFamily|Lin"), 2u) << "families are ignored";
    EXPECT_EQ(index.find_first_exact("LIN"), NOT_FOUND);
    EXPECT_EQ(index.find_last_ignoring_case("none"), NOT_FOUND);
}

TEST_F(ColorSpaceNameIndices, AreCurrentUntilTheEnumerationIsEdited) {
    add({"a"});
    const ColorSpaceNameIndex index(labels);
    EXPECT_TRUE(index.is_current(labels));
    add({"b"});
    EXPECT_FALSE(index.is_current(labels));
    OfEnum& others = *app.get_object_factory().add_enum("others", 0xFFFFFFFF);
    EXPECT_FALSE(ColorSpaceNameIndex(labels).is_current(others));
}

} // namespace
