/// How a parse error is reported.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "xml/Exceptions.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// The source that a parse error names when the text is not from a file.
inline constexpr std::u16string_view kTextSource = u"text";

/// Puts "source:line:column: reason" into `detail`, or empties it when memory runs out.
void DescribePlace(std::u16string_view source, std::uint32_t line, std::uint32_t column, std::u16string_view reason,
                   std::u16string& detail) noexcept;

/// Logs the error's place under `operation` ("CClass::Initialize()"), describes it in `detail` as DescribePlace does,
/// and returns SyntaxError.
[[nodiscard]] result::Code ReportParseFailure(std::u16string_view operation, std::u16string_view source,
                                              const AdvXMLParser::ParsingException& error,
                                              std::u16string& detail) noexcept;

}  // namespace zupm
