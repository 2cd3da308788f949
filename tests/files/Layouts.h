/// The same document in other clothes: line ends, indentation, encoding.
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
    std::string_view encodingName;  ///< as the declaration gives it
};

/// For gtest messages.
void PrintTo(const Layout& layout, std::ostream* out);

[[nodiscard]] const std::vector<Layout>& Layouts();

/// The bytes of a document that stands in UTF-8 with LF and two blanks a step. Without line breaks, a line break and
/// the blanks behind it go.
[[nodiscard]] std::string LaidOut(std::string_view canonical, const Layout& layout);

}  // namespace zupm::test
