#include <charconv>
#include <clocale>
#include <cmath>
#include <limits>

#include "conformance/check.h"
#include "host/core/core_string.h"

namespace conformance {

namespace {

/// Gives the process a locale with a comma as the decimal point, if one is installed, until the end of the
/// scope.
class CommaLocale {
public:
    CommaLocale() {
        for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "fr_FR"})
            if (std::setlocale(LC_ALL, name))
                return;
    }
    ~CommaLocale() { std::setlocale(LC_ALL, "C"); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
};

void expect_value(Findings& findings, const char* text, double expected) {
    const double found = CoreString(text).to_double();
    findings.expect(found == expected, "to_double of '" + std::string(text) + "': found " +
                                           std::to_string(found) + ", expected " + std::to_string(expected));
}

void check_to_double(Findings& findings) {
    const CommaLocale locale;
    expect_value(findings, "0.5", 0.5);
    expect_value(findings, " \t-1.25e2 next", -125);
    expect_value(findings, "+3", 3);
    expect_value(findings, "1,5", 1);
    expect_value(findings, "0x10", 0);
    expect_value(findings, "none", 0);
    expect_value(findings, "", 0);
    expect_value(findings, "-inf", -std::numeric_limits<double>::infinity());
    expect_value(findings, "1e999", std::numeric_limits<double>::infinity());
    findings.expect(std::isnan(CoreString("NaN").to_double()), "to_double of 'NaN' is not a number");
}

void check_from_float(Findings& findings) {
    const CommaLocale locale;
    findings.expect_text(CoreString::from_float(0.1f).view(), "0.1", "from_float(0.1)");
    findings.expect_text(CoreString::from_float(1.0f / 3).view(), "0.33333334", "from_float(1/3)");
    findings.expect_text(CoreString::from_float(-2).view(), "-2", "from_float(-2)");
    for (const float value : {1e-40f, 16777216.0f, 0.00390625f, 3.4028235e38f}) {
        const CoreString text = CoreString::from_float(value);
        float read_back = 0;
        std::from_chars(text.get_data(), text.get_data() + text.get_count(), read_back);
        findings.expect(read_back == value, "'" + std::string(text.view()) + "' reads back to another value");
    }
}

void check_from_unsigned(Findings& findings) {
    findings.expect_text(CoreString::from_unsigned(0).view(), "0", "from_unsigned(0)");
    findings.expect_text(CoreString::from_unsigned(4096).view(), "4096", "from_unsigned(4096)");
    findings.expect_text(CoreString::from_unsigned(4294967295u).view(), "4294967295",
                         "from_unsigned(2^32 - 1)");
}

} // namespace

Checks list_string_number_checks() {
    return {
        {"strings.to-double", "to_double reads a decimal number in every locale",
         "numbers of CDL documents are read wrongly", check_to_double},
        {"strings.from-float",
         "from_float writes the shortest text that reads back to the same value, in every locale",
         "the built-in LUT files are wrong", check_from_float},
        {"strings.from-unsigned", "from_unsigned writes decimal digits",
         "the built-in LUT files cannot be read", check_from_unsigned},
    };
}

} // namespace conformance
