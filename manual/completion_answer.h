#pragma once

#include <string>
#include <vector>

#include "manual/command_description.h"

namespace manual {

/// What a completion script asked for, as lines: ":files" and ":folders" are for the shell to complete,
/// others are "=" and a candidate. `request` is the shell and its words, the last of which is to be
/// completed: "zsh", "convert", "--fr". bash passes the line up to the cursor and COMP_WORDBREAKS instead,
/// and gets its candidates quoted; fish gets help texts behind a tab. Empty for a request that is too short.
std::string answer_completion(const CommandDescription& program, const std::vector<std::string>& request);

} // namespace manual
