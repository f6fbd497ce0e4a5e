#include <ctime>
#include <stdexcept>

#include "conformance/app_fixture.h"
#include "conformance/check.h"
#include "host/of/of_enum.h"

namespace conformance {

namespace {

void check_new(Findings& findings) {
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    findings.expect_number(list.get_value_count(), 0, "the count of a new enumeration");
    findings.expect_number(list.get_invalid_value(), AppFixture::INVALID_VALUE, "its invalid value");
    findings.expect_text(list.get_separator().view(), "", "its separator");
    list.set_separator('|');
    findings.expect_text(list.get_separator().view(), "|", "the separator that was set");
}

void check_labels(Findings& findings) {
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    list.add_value(CoreString("Film|log"), 5);
    list.add_value(CoreString("lin"), 3);
    list.add_value(CoreString("Film|log"), 9);
    findings.expect_number(list.get_value_count(), 3, "the count");
    findings.expect_text(list.get_label(1).view(), "lin", "the label at position 1");
    findings.expect_text(list.get_label(2).view(), "Film|log", "the label at position 2");
    findings.expect_number(list.find_label_index(CoreString("Film|log")), 0,
                           "the position of a repeated label");
    findings.expect_number(list.get_value(CoreString("Film|log")), 5, "get_value of a repeated label");
    findings.expect_number(list.get_value_from_label(CoreString("lin")), 3, "get_value_from_label");
}

void check_unknown(Findings& findings) {
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    list.add_value(CoreString("lin"), 3);
    findings.expect_number(list.find_label_index(CoreString("Lin")), AppFixture::NOT_FOUND,
                           "the position of a label in another case");
    findings.expect_number(list.find_label_index(CoreString("li")), AppFixture::NOT_FOUND,
                           "the position of a part of a label");
    findings.expect_number(list.get_value(CoreString("log")), AppFixture::INVALID_VALUE,
                           "get_value of an unknown label");
    findings.expect_number(list.get_value_from_label(CoreString("log")), AppFixture::INVALID_VALUE,
                           "get_value_from_label of one");
    findings.expect_text(list.get_label(1).view(), "", "the label past the end");
    findings.expect_text(list.get_label(AppFixture::NOT_FOUND).view(), "",
                         "the label at position 0xFFFFFFFF");
}

void check_several_values(Findings& findings) {
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    list.add_value(CoreString("default"), 0);
    CoreVector<CoreString> labels;
    CoreVector<unsigned int> values;
    for (const char* label : {"a", "b", "surplus"})
        labels.append(CoreString(label));
    for (const unsigned int value : {6u, 7u})
        values.append(value);
    list.add_values(labels, values);
    findings.expect_number(list.get_value_count(), 3, "the count after one label and then two with values");
    findings.expect_text(list.get_label(0).view(), "default", "the label at position 0");
    findings.expect_text(list.get_label(2).view(), "b", "the label at position 2");
    findings.expect_number(list.get_value(CoreString("b")), 7, "the value of 'b'");
}

void check_removal(Findings& findings) {
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    list.set_separator('|');
    list.add_value(CoreString("lin"), 3);
    list.remove_all_values();
    findings.expect_number(list.get_value_count(), 0, "the count");
    findings.expect_number(list.find_label_index(CoreString("lin")), AppFixture::NOT_FOUND,
                           "the position of a removed label");
    findings.expect_text(list.get_separator().view(), "|", "the separator");
    list.add_value(CoreString("log"), 4);
    list.add_value(CoreString("lin"), 5);
    findings.expect_number(list.get_value(CoreString("lin")), 5, "the value of a label that was added again");
}

/// Processor time of many lookups of the last of `count` labels, in seconds.
double measure_lookups(unsigned int count) {
    constexpr int LOOKUPS = 500;
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    list.asleep();
    for (unsigned int i = 0; i < count; ++i)
        list.add_value(CoreString(("space " + std::to_string(i)).c_str()), i);
    list.awake(true);
    const CoreString last(("space " + std::to_string(count - 1)).c_str());
    const std::clock_t begin = std::clock();
    for (int i = 0; i < LOOKUPS; ++i)
        if (list.get_value(last) != count - 1)
            throw std::runtime_error("the last label is not found");
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

void check_many_labels(Findings& findings) {
    constexpr double UNCERTAINTY = 0.02; // seconds
    const double few = measure_lookups(200), many = measure_lookups(20000);
    findings.expect(many < 20 * few + UNCERTAINTY, "a lookup among 100 times as many labels takes " +
                                                       std::to_string(many / few) + " times as long");
}

void check_revision(Findings& findings) {
    AppFixture app;
    OfEnum& list = app.add_enum("conformance_list");
    unsigned long long last = list.get_revision();
    const auto expect_growth = [&](const char* edit) {
        findings.expect(list.get_revision() > last, std::string("the revision grows with ") + edit);
        last = list.get_revision();
    };
    list.set_separator('|');
    expect_growth("set_separator");
    list.add_value(CoreString("lin"), 3);
    expect_growth("add_value");
    list.asleep();
    CoreVector<CoreString> labels;
    CoreVector<unsigned int> values;
    labels.append(CoreString("log"));
    values.append(4);
    list.add_values(labels, values);
    expect_growth("add_values while asleep");
    list.remove_all_values();
    expect_growth("remove_all_values while asleep");
    list.awake(true);
}

void check_factory(Findings& findings) {
    AppFixture app;
    OfObjectFactory& factory = app.get().get_object_factory();
    OfEnum& first = app.add_enum("conformance_list");
    findings.expect(factory.get_enum(CoreString("conformance_list")) == &first,
                    "get_enum returns the added one");
    findings.expect(!factory.get_enum(CoreString("conformance_lost")),
                    "get_enum returns null for another name");
    first.add_value(CoreString("lin"), 3);
    OfEnum& second = app.add_enum("conformance_list");
    findings.expect(factory.get_enum(CoreString("conformance_list")) == &second,
                    "get_enum returns the last one that was added with the name");
    findings.expect_number(second.get_value_count(), 0, "the labels of the last one");
    findings.expect_text(first.get_label(0).view(), "lin", "the label of the first one, which lives on");
}

} // namespace

Checks list_enumeration_checks() {
    return {
        {"enumerations.new",
         "a new enumeration is empty and has the invalid value and separator that it is given",
         "names without a color space are taken for the first one", check_new},
        {"enumerations.labels", "labels keep their order and may repeat; the first one is found",
         "another color space is converted from than the one that was chosen", check_labels},
        {"enumerations.unknown", "unknown labels and positions return the values for them",
         "names of another config are taken for color spaces", check_unknown},
        {"enumerations.add-values", "add_values appends labels with their values",
         "the lists of color spaces and views are wrong", check_several_values},
        {"enumerations.remove-all", "remove_all_values removes labels and values, and nothing else",
         "color spaces of the old config are still found", check_removal},
        {"enumerations.many", "a lookup takes no longer among many labels",
         "large configs take minutes to load", check_many_labels},
        {"enumerations.revision", "the revision grows with every edit, also while asleep",
         "names of the old config are found by the module's index of names", check_revision},
        {"enumerations.factory", "the factory finds an enumeration by its name, and the last one of a name",
         "menus of the host do not show the module's names", check_factory},
    };
}

} // namespace conformance
