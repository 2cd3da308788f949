/// The same document with other line ends, indentation and encoding.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Encode.h"

namespace zupm::test {

/// How a document is laid out and stored.
struct Layout {
    std::string label;
    std::string_view lineEnd;  ///< empty: no line breaks at all
    std::string_view indent;   ///< one step
    Form form;
    std::string_view encodingName;  ///< as the declaration names it
};

/// For gtest messages.
void PrintTo(const Layout& layout, std::ostream* out);

[[nodiscard]] const std::vector<Layout>& Layouts();

/// The bytes of a document that is given in UTF-8 with LF and two blanks a step. A layout without line breaks loses
/// each line break and the blanks after it.
[[nodiscard]] std::string LaidOut(std::string_view canonical, const Layout& layout);

}  // namespace zupm::test
