#include "conformance/check.h"
#include "host/core/core_array.h"
#include "host/core/core_set.h"
#include "host/core/core_vector.h"
#include "host/gmath/gmath_vec4.h"

namespace conformance {

namespace {

using Texts = CoreVector<std::string>;

std::string join(const CoreBasicArray<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts)
        joined.append("[").append(text).append("]");
    return joined;
}

Texts make_texts() {
    Texts texts;
    for (const char* text : {"a", "b", "c"})
        texts.append(text);
    return texts;
}

void check_array_size(Findings& findings) {
    CoreArray<float> numbers(3);
    findings.expect_number(numbers.get_count(), 3, "the count of an array of three");
    numbers[0] = numbers[1] = numbers[2] = 1;
    numbers.resize(4);
    findings.expect_number(numbers.get_count(), 4, "the count after resize(4)");
    for (const float number : numbers)
        findings.expect(number == 0, "a resized array holds zeros only");
    numbers.remove_all();
    findings.expect(numbers.is_empty() && !numbers.get_data(), "an array without elements has no storage");
}

void check_array_copies(Findings& findings) {
    CoreArray<std::string> first(2);
    first[0] = "a";
    CoreArray<std::string> copy = first;
    copy[0] = "changed";
    findings.expect_text(join(first), "[a][]", "an array whose copy was changed");
    CoreArray<std::string> taken = std::move(copy);
    findings.expect_text(join(taken), "[changed][]", "a moved array");
    first = taken;
    findings.expect_text(join(first), "[changed][]", "an assigned array");
}

void check_appended(Findings& findings) {
    Texts texts;
    findings.expect(texts.is_empty() && !texts.get_data(), "an empty vector has no storage");
    texts.append("a");
    for (int i = 0; i < 4; ++i)
        texts.append(texts[0]);
    findings.expect_text(join(texts), "[a][a][a][a][a]",
                         "a vector that its own first element was appended to");
    findings.expect_number(texts.get_capacity(), 8, "its capacity, which doubles from 1");
}

void check_reserved(Findings& findings) {
    Texts texts = make_texts();
    texts.reserve(100);
    findings.expect_number(texts.get_capacity(), 100, "the capacity after reserve(100)");
    const std::string* const first = texts.get_data();
    texts.remove_all();
    texts.append("d");
    findings.expect(texts.get_data() == first, "remove_all keeps the storage");
    findings.expect_text(join(texts), "[d]", "the elements after remove_all and append");
}

void check_inserted_and_removed(Findings& findings) {
    Texts texts = make_texts();
    texts.insert(0, "first");
    texts.insert(2, "middle");
    texts.insert(99, "last");
    findings.expect_text(join(texts), "[first][a][middle][b][c][last]",
                         "elements inserted at 0, at 2 and past the end");
    texts.remove(2);
    texts.remove(99);
    texts.remove_last();
    findings.expect_text(join(texts), "[first][a][b][c]", "the elements after removals");
}

void check_vector_copies(Findings& findings) {
    Texts first = make_texts();
    Texts copy = first;
    copy[0] = "changed";
    findings.expect_text(join(first), "[a][b][c]", "a vector whose copy was changed");
    const std::string* const storage = copy.get_data();
    Texts taken = std::move(copy);
    findings.expect(taken.get_data() == storage && taken.get_capacity() >= 3,
                    "a moved vector keeps its storage");
    taken.swap(first);
    findings.expect_text(join(first) + join(taken), "[changed][b][c][a][b][c]", "two vectors after swap");
}

void check_set(Findings& findings) {
    CoreSet<std::string> names;
    findings.expect(names.add("lin"), "a new value is added");
    findings.expect(!names.add("lin"), "a value is added once");
    findings.expect(names.contains("lin") && !names.contains("Lin"), "only added values are in the set");
    findings.expect_number(names.get_count(), 1, "the count");
}

void check_color(Findings& findings) {
    GMathVec4<float> color(0.25f, 0.5f, 0.75f, 1.0f);
    const float* const data = color.get_data();
    findings.expect(data[0] == 0.25f && data[1] == 0.5f && data[2] == 0.75f && data[3] == 1.0f,
                    "red, green, blue and alpha lie in this order");
    findings.expect_number(sizeof color, 4 * sizeof(float), "the bytes of a color");
    findings.expect(GMathVec4<float>()[3] == 0, "a color is zero at first");
}

} // namespace

Checks list_container_checks() {
    return {
        {"containers.array-size", "an array holds exactly as many elements as it is resized to, all zero",
         "LUTs have random values", check_array_size},
        {"containers.array-copies", "copies of an array are independent", "LUTs change each other",
         check_array_copies},
        {"containers.append", "append takes an element of the same vector and doubles the capacity",
         "names are lost or damaged while they are published", check_appended},
        {"containers.reserve", "reserve and remove_all change the storage only as said",
         "names are lost while they are published", check_reserved},
        {"containers.insert-remove", "insert and remove keep the order and take positions past the end",
         "'Use Default' is not the first entry of the menu of color spaces", check_inserted_and_removed},
        {"containers.vector-copies", "copies of a vector are independent, moves keep the storage",
         "lists of names change each other", check_vector_copies},
        {"containers.set", "a set holds each value once",
         "a missing color space is counted once for each of its file formats", check_set},
        {"containers.color", "a color is four adjacent numbers", "converted pixels have swapped channels",
         check_color},
    };
}

} // namespace conformance
