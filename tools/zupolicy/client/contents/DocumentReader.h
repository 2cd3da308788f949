/// Reads the text of a policy file into records.
#pragma once

#include <optional>
#include <string_view>

#include "tools/zupolicy/client/contents/FileContents.h"

namespace zupm::tool {

/// The policies and tasks of a policy file's text, by the component's rules: the first of two entries with one key
/// counts, sections of one name are one section, an element's name does not matter below a product or a task. Versions
/// and assignment list stay empty: the component reports them. Nothing when the text cannot be read as a document.
[[nodiscard]] std::optional<FileContents> ReadDocument(std::string_view text);

}  // namespace zupm::tool
