/// Policy files that edits start from.
#pragma once

#include <string>

#include "fuzz/support/Input.h"

namespace zupm::fuzz {

/// A file's bytes: the sample in one of all encodings and with one of all line ends, or the input's own bytes.
[[nodiscard]] std::string MakeBaseFile(Input& input);

}  // namespace zupm::fuzz
