#include "xml/scan/Tokens.h"

#include <cstddef>

#include "xml/scan/Names.h"

namespace AdvXMLParser {

namespace {

constexpr std::string_view kCommentBegin = "<!--";
constexpr std::string_view kDashes = "--";
constexpr std::string_view kInstructionBegin = "<?";
constexpr std::string_view kInstructionClose = "?>";
constexpr std::string_view kCdataOpen = "<![CDATA[";
constexpr std::string_view kCdataClose = "]]>";

/// "xml" in any case is the target of nothing but the XML declaration.
constexpr bool IsReserved(std::string_view target)
{
    const auto isLetter = [](char c, char lower) { return (c | 0x20) == lower; };
    return target.size() == 3 && isLetter(target[0], 'x') && isLetter(target[1], 'm') && isLetter(target[2], 'l');
}

}  // namespace

std::uint32_t Tokens::TakeTo(std::size_t close, std::string_view closing)
{
    const auto end = static_cast<std::uint32_t>(close + closing.size());
    m_marks.SkipTo(end);
    return end;
}

std::uint32_t Tokens::CommentEnd(std::uint32_t begin)
{
    if (!Has(begin, kCommentBegin)) {
        return kNotAccepted;
    }
    // Two dashes are nowhere in a comment but at its end.
    const std::size_t dashes = m_text.find(kDashes, begin + kCommentBegin.size());
    if (dashes == std::string_view::npos || At(static_cast<std::uint32_t>(dashes))[kDashes.size()] != '>') {
        return kNotAccepted;
    }
    return TakeTo(dashes, "-->");
}

std::uint32_t Tokens::InstructionEnd(std::uint32_t begin)
{
    const std::size_t target = begin + kInstructionBegin.size();
    const std::size_t length = NameLengthAt(m_text.data() + target);
    if (length == 0 || IsReserved(m_text.substr(target, length))) {
        return kNotAccepted;
    }
    // White space separates the target from what follows it.
    const auto content = static_cast<std::uint32_t>(target + length);
    const std::size_t close = IsBlank((*this)[content])         ? m_text.find(kInstructionClose, content)
                              : Has(content, kInstructionClose) ? content
                                                                : std::string_view::npos;
    return close == std::string_view::npos ? kNotAccepted : TakeTo(close, kInstructionClose);
}

std::uint32_t Tokens::CdataEnd(std::uint32_t begin)
{
    if (!Has(begin, kCdataOpen)) {
        return kNotAccepted;
    }
    const std::size_t close = m_text.find(kCdataClose, begin + kCdataOpen.size());
    return close == std::string_view::npos ? kNotAccepted : TakeTo(close, kCdataClose);
}

}  // namespace AdvXMLParser
