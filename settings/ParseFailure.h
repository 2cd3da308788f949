/// What becomes of a parse error.
#pragma once

#include <string>
#include <string_view>

#include "platform/xml/Exceptions.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// The source named in a parse error of text that came from no file.
inline constexpr std::u16string_view kTextSource = u"text";

/// Logs the error's place under `operation` ("CClass::Initialize()"), puts "source:line:column: reason" into `detail`
/// (left empty when memory runs out) and returns SyntaxError.
[[nodiscard]] result::Code ReportParseFailure(std::u16string_view operation, std::u16string_view source,
                                              const AdvXMLParser::ParsingException& error,
                                              std::u16string& detail) noexcept;

}  // namespace zupm
