#include "settings/ParseFailure.h"

#include <new>

#include "com/Log.h"
#include "text/Decimal.h"
#include "text/Utf.h"

namespace zupm {

void DescribePlace(std::u16string_view source, std::uint32_t line, std::uint32_t column, std::u16string_view reason,
                   std::u16string& detail) noexcept
{
    try {
        detail.assign(source);
        detail.append(u":").append(FormatUnsigned(line));
        detail.append(u":").append(FormatUnsigned(column));
        detail.append(u": ").append(reason);
    } catch (const std::bad_alloc&) {
        detail.clear();
    }
}

result::Code ReportParseFailure(std::u16string_view operation, std::u16string_view source,
                                const AdvXMLParser::ParsingException& error, std::u16string& detail) noexcept
{
    LogParseFailure(operation, error.GetLine(), error.GetColumn());
    try {
        DescribePlace(source, error.GetLine(), error.GetColumn(), ToUtf16Lossy(error.GetReason()), detail);
    } catch (const std::bad_alloc&) {
        detail.clear();
    }
    return result::SyntaxError;
}

}  // namespace zupm
