#include "settings/ParseFailure.h"

#include <new>

#include "module/host/Log.h"
#include "platform/common/Decimal.h"
#include "platform/common/Utf.h"

namespace zupm {

result::Code ReportParseFailure(std::u16string_view operation, std::u16string_view source,
                                const AdvXMLParser::ParsingException& error, std::u16string& detail) noexcept
{
    LogParseFailure(operation, error.GetLine(), error.GetColumn());
    try {
        detail.assign(source);
        detail.append(u":").append(FormatUnsigned(error.GetLine()));
        detail.append(u":").append(FormatUnsigned(error.GetColumn()));
        detail.append(u": ").append(ToUtf16Lossy(error.GetReason()));
    } catch (const std::bad_alloc&) {
        detail.clear();
    }
    return result::SyntaxError;
}

}  // namespace zupm
