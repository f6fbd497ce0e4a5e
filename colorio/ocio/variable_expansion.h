#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "colorio/ocio/types.h"

namespace ocio {

/// True when OpenColorIO would look for variables in `text`.
bool may_hold_variables(const std::string& text);

/// Follows OpenColorIO's replacement of context variables step by step: in each round every variable in turn,
/// longer names first, in its three spellings.
class VariableExpansion {
public:
    explicit VariableExpansion(const library::Context& context);

    /// Throws when replacing the variables in `text` would not end or would grow without bound; the message
    /// names the variables that refer to each other.
    void require_bounded(const std::string& text);
    /// The same for the value of a variable.
    void require_bounded_value(const std::string& name);
    /// False when no value in a YAML text can refer to a variable.
    bool may_be_used_in(const std::string& yaml) const;

private:
    struct Variable {
        std::string name;
        std::string value;
        std::string spellings[3];
    };

    bool begins_variable(const std::string& text, std::size_t at) const;
    void replace(std::string& text, const Variable& variable);
    std::vector<const Variable*> variables_in(std::string text) const;
    [[noreturn]] void refuse(const std::string& text) const;
    std::vector<const Variable*> find_cycle(const std::string& text) const;
    static std::string names_of(const std::vector<const Variable*>& chain);

    std::vector<Variable> variables_; ///< longer names first
    std::size_t replacements_ = 0;
    std::size_t work_ = 0;
};

} // namespace ocio
