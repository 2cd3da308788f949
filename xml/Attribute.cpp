#include <algorithm>
#include <optional>
#include <utility>

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

std::optional<AttributeSpan> FindAttribute(std::string_view tag, std::u16string_view name) noexcept
{
    TagScanner scanner(tag);
    std::optional<AttributeSpan> span = scanner.Next();
    while (span && !NameEquals(span->name, name)) {
        span = scanner.Next();
    }
    return span;
}

/// Whether a byte of a raw attribute value is one character and means it.
bool MeansItself(char byte) noexcept
{
    return byte >= ' ' && byte <= '~' && byte != '&';
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
    if (IsNull()) {
        return false;
    }
    const std::optional<AttributeSpan> span = FindAttribute(m_tree->StartTag(m_index), name);
    if (!span) {
        return false;
    }
    if (std::ranges::all_of(span->value, MeansItself)) {
        text.resize(span->value.size());
        std::ranges::copy(span->value, text.begin());
    } else {
        text = DecodedAttribute(span->value);
    }
    return true;
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
