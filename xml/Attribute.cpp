#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "text/AsciiUnits.h"
#include "text/Utf.h"
#include "xml/Characters.h"
#include "xml/Escape.h"
#include "xml/Exceptions.h"
#include "xml/Node.h"
#include "xml/SpanTree.h"
#include "xml/TagScanner.h"

namespace AdvXMLParser {

namespace {

std::u16string DecodedAttribute(std::string_view raw)
{
    return zupm::ToUtf16(DecodeAttribute(raw)).value_or(std::u16string());
}

/// The next attribute of that name.
std::optional<AttributeSpan> FindNext(TagScanner& scanner, std::u16string_view name) noexcept
{
    std::optional<AttributeSpan> span = scanner.Next();
    while (span && !NameEquals(span->name, name)) {
        span = scanner.Next();
    }
    return span;
}

std::optional<AttributeSpan> FindAttribute(std::string_view tag, std::u16string_view name) noexcept
{
    TagScanner scanner(tag);
    return FindNext(scanner, name);
}

/// Whether every byte of a raw attribute value is one character and means it: ASCII without control characters and '&'.
bool MeansItself(std::string_view raw) noexcept
{
    constexpr std::uint64_t kEach = 0x0101010101010101u;
    constexpr std::uint64_t kHigh = 0x80 * kEach;
    // The high bit of each byte that is not such a character; bits do not pass from one byte to the next.
    const auto others = [](std::uint64_t bytes) {
        const std::uint64_t isNoControl = (bytes | kHigh) - 0x20 * kEach;
        const std::uint64_t apart = bytes ^ '&' * kEach;
        const std::uint64_t isNoAmpersand = ((apart & ~kHigh) + 0x7F * kEach) | apart;
        return (bytes | ~isNoControl | ~isNoAmpersand) & kHigh;
    };
    if (raw.size() < sizeof(std::uint64_t)) {
        std::uint64_t all = 0x20 * kEach;
        for (const char byte : raw) {
            all = all << 8 | static_cast<unsigned char>(byte);
        }
        return others(all) == 0;
    }
    const std::size_t last = raw.size() - sizeof(std::uint64_t);
    std::uint64_t found = 0;
    for (std::size_t at = 0; at < last; at += sizeof(std::uint64_t)) {
        found |= others(zupm::ascii::LoadWord<std::uint64_t>(raw.data() + at));
    }
    return (found | others(zupm::ascii::LoadWord<std::uint64_t>(raw.data() + last))) == 0;
}

/// Replaces `text` by the value, when there is one.
bool ReadValue(const std::optional<AttributeSpan>& span, std::u16string& text)
{
    if (!span) {
        return false;
    }
    const std::string_view value = span->value;
    if (MeansItself(value)) {
        text.resize(value.size());
        zupm::WidenBytes(value.data(), value.size(), text.data());
    } else {
        text = DecodedAttribute(value);
    }
    return true;
}

std::string Replaced(std::string_view tag, std::size_t from, std::size_t to, std::string_view by)
{
    std::string out(tag.substr(0, from));
    return out.append(by).append(tag.substr(to));
}

}  // namespace

Attribute::Attribute(const Element& element, std::string name) : m_element(element), m_name(std::move(name)) {}

Attribute Element::GetAttribute(std::u16string_view name) const
{
    if (IsNull()) {
        return {};
    }
    const std::optional<AttributeSpan> span = FindAttribute(m_tree->StartTag(m_index), name);
    return span ? Attribute(*this, std::string(span->name)) : Attribute();
}

bool Element::ReadAttribute(std::u16string_view name, std::u16string& text) const
{
    return !IsNull() && ReadValue(FindAttribute(m_tree->StartTag(m_index), name), text);
}

bool Element::ReadAttributes(std::u16string_view name, std::u16string& text, std::u16string_view laterName,
                             std::u16string& laterText) const
{
    if (IsNull()) {
        return false;
    }
    const std::string_view tag = m_tree->StartTag(m_index);
    TagScanner scanner(tag);
    const bool hasFirst = ReadValue(FindNext(scanner, name), text);
    std::optional<AttributeSpan> later = FindNext(scanner, laterName);
    if (!later) {
        later = FindAttribute(tag, laterName);
    }
    return ReadValue(later, laterText) && hasFirst;
}

Attribute Element::CreateAttribute(std::u16string_view name, std::u16string_view value)
{
    Attribute existing = GetAttribute(name);
    if (IsNull() || !existing.IsNull()) {
        return existing;
    }
    if (!IsPlainName(name)) {
        throw InvalidCharacterException();
    }
    Attribute created(*this, *zupm::ToUtf8(name));
    const std::string_view tag = m_tree->StartTag(m_index);
    const std::size_t offset = AttributeInsertOffset(tag);
    const std::string written = " " + created.m_name + "=\"" + EscapeAttribute(value, '"') + "\"";
    m_tree->ReplaceStartTag(m_index, Replaced(tag, offset, offset, written));
    return created;
}

std::optional<AttributeSpan> Attribute::Find() const noexcept
{
    const Node& node = m_element;
    if (node.IsNull()) {
        return std::nullopt;
    }
    TagScanner scanner(m_element.m_tree->StartTag(m_element.m_index));
    std::optional<AttributeSpan> span = scanner.Next();
    while (span && span->name != m_name) {
        span = scanner.Next();
    }
    return span;
}

bool Attribute::IsNull() const noexcept
{
    return !Find();
}

std::u16string Attribute::GetName() const
{
    return IsNull() ? std::u16string() : zupm::ToUtf16(m_name).value_or(std::u16string());
}

std::u16string Attribute::GetText() const
{
    const std::optional<AttributeSpan> span = Find();
    return span ? DecodedAttribute(span->value) : std::u16string();
}

bool Attribute::TextIs(std::u16string_view text) const
{
    const std::optional<AttributeSpan> span = Find();
    return span && zupm::EqualsUtf16(DecodeAttribute(span->value), text);
}

void Attribute::DeleteChildren()
{
    SetText({});
}

void Attribute::AddText(std::u16string_view text)
{
    SetText(GetText().append(text));
}

void Attribute::SetText(std::u16string_view text)
{
    const std::optional<AttributeSpan> span = Find();
    if (!span) {
        return;
    }
    const std::string escaped = EscapeAttribute(text, span->quote);
    if (!zupm::EqualsUtf16(DecodeAttribute(span->value), text)) {
        SpanTree& tree = *m_element.m_tree;
        const std::string_view tag = tree.StartTag(m_element.m_index);
        tree.ReplaceStartTag(m_element.m_index,
                             Replaced(tag, span->valueOffset, span->valueOffset + span->value.size(), escaped));
    }
}

}  // namespace AdvXMLParser
