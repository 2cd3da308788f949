/// Reads the text of a policy file into records.
#pragma once

#include <string>

#include "model/FileContents.h"

namespace zupm::tool {

/// The policies and tasks of a policy file's text (UTF-8, whatever its declaration names), by the component's rules:
/// the first of two entries with one key counts, sections of one name are one section, an element's name does not
/// matter below a product or a task. Versions and assignment list stay empty: the component tells them. Throws Failure
/// when the text is not well-formed.
[[nodiscard]] FileContents ReadDocument(const std::string& text);

}  // namespace zupm::tool
