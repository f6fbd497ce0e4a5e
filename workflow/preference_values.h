#pragma once

#include <string>
#include <variant>
#include <vector>

#include "diagnostics/diagnostic.h"

class StandaloneApp;

namespace workflow {

/// A preference of the application, by its name in the preferences file.
struct PreferenceValue {
    const char* name;
    std::variant<std::string, bool> value;
};

/// In the order of the file.
std::vector<PreferenceValue> get_preference_values(const StandaloneApp& app);

/// "yes" or "no" for a switch, else the text.
std::string format_preference(const PreferenceValue& preference);

/// Sets a preference. Switches take yes, no, on, off, true and false. Paths become absolute, and the file
/// must be usable for its purpose; the path of a config or of a mapping file turns its switch on, and an
/// empty one turns it off; a note reports this. Throws diagnostics::Failure, with the nearest names for an
/// unknown name. Needs an open session.
void set_preference(StandaloneApp& app, const std::string& name, const std::string& value,
                    diagnostics::Diagnostics& notes);

} // namespace workflow
