#pragma once

#include <string>

namespace ocio {

/// A YAML text can name a part of itself and repeat it, and repeat the repetition: a few lines then stand for
/// more than any memory holds. Throws when the file's repetitions amount to more than 200,000 nodes, or when
/// it is no regular file. What cannot be opened or parsed passes: the library says why.
void require_bounded_yaml(const std::string& path);

} // namespace ocio
