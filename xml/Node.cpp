#include "xml/Node.h"

#include "text/Utf.h"
#include "xml/Characters.h"
#include "xml/Escape.h"
#include "xml/Exceptions.h"
#include "xml/SpanTree.h"
#include "xml/TagScanner.h"

namespace AdvXMLParser {

namespace {

std::u16string Wide(std::string_view utf8)
{
    return zupm::ToUtf16(utf8).value_or(std::u16string());
}

/// Whether raw content means itself: it holds no markup, no reference and no line end that is read as another.
bool IsPlainText(std::string_view raw) noexcept
{
    return raw.find('&') == raw.npos && raw.find('<') == raw.npos && raw.find('\r') == raw.npos;
}

std::string PlainName(std::u16string_view name)
{
    if (!IsPlainName(name)) {
        throw InvalidCharacterException();
    }
    return *zupm::ToUtf8(name);
}

/// The decoded character data directly inside an element, in UTF-8.
std::string TextOf(const SpanTree& tree, std::uint32_t element)
{
    std::string text;
    for (std::uint32_t child = tree.FirstChild(element); child != SpanTree::kNone; child = tree.NextSibling(child)) {
        AppendDecodedText(tree.Before(child), text);
    }
    AppendDecodedText(tree.Tail(element), text);
    return text;
}

}  // namespace

bool Node::IsNull() const noexcept
{
    return m_tree == nullptr || !m_tree->IsAlive(m_index, m_generation);
}

std::u16string Node::GetName() const
{
    return IsNull() ? std::u16string() : Wide(m_tree->Name(m_index));
}

bool Node::NameIs(std::u16string_view name) const noexcept
{
    return !IsNull() && NameEquals(TagName(m_tree->StartTag(m_index)), name);
}

void Node::Delete()
{
    if (!IsNull() && m_tree->Parent(m_index) != SpanTree::kDocument) {
        m_tree->Remove(m_index);
    }
}

ElementIterator NodeContainer::Begin() const noexcept
{
    if (IsNull()) {
        return End();
    }
    const std::uint32_t child = m_tree->FirstChild(m_index);
    return child == SpanTree::kNone ? End() : ElementIterator(Element(m_tree, child, m_tree->Generation(child)));
}

ElementIterator NodeContainer::End() const noexcept
{
    return {};
}

std::size_t NodeContainer::CountChildren(std::size_t most) const noexcept
{
    std::size_t count = 0;
    std::uint32_t child = IsNull() ? SpanTree::kNone : m_tree->FirstChild(m_index);
    for (; child != SpanTree::kNone && count < most; child = m_tree->NextSibling(child)) {
        ++count;
    }
    return count;
}

ElementIterator& ElementIterator::operator++() noexcept
{
    const Node& node = m_element;
    const std::uint32_t next = node.IsNull() ? SpanTree::kNone : node.m_tree->NextSibling(node.m_index);
    m_element = next == SpanTree::kNone ? Element() : Element(node.m_tree, next, node.m_tree->Generation(next));
    return *this;
}

Element NodeContainer::Add(const ElementClone& clone)
{
    const Node& source = *clone.source;
    if (IsNull() || source.IsNull()) {
        return {};
    }
    const std::uint32_t copy = m_tree->AddCopy(m_index, *source.m_tree, source.m_index);
    return Element(m_tree, copy, m_tree->Generation(copy));
}

Element NodeContainer::AddElementInto(std::u16string_view name)
{
    if (IsNull()) {
        return {};
    }
    const std::uint32_t element = m_tree->AddElement(m_index, PlainName(name));
    return Element(m_tree, element, m_tree->Generation(element));
}

Element NodeContainer::AddElementInto(std::u16string_view name, std::u16string_view attribute,
                                      std::u16string_view value, std::u16string_view text)
{
    if (IsNull()) {
        return {};
    }
    const std::string tag = PlainName(name) + " " + PlainName(attribute) + "=\"" + EscapeAttribute(value, '"') + "\"";
    const std::uint32_t element = m_tree->AddElement(m_index, tag, EscapeText(text));
    return Element(m_tree, element, m_tree->Generation(element));
}

std::u16string NodeContainer::GetText() const
{
    if (IsNull()) {
        return {};
    }
    const std::string_view tail = m_tree->Tail(m_index);
    if (m_tree->FirstChild(m_index) == SpanTree::kNone && IsPlainText(tail)) {
        return Wide(tail);
    }
    if (m_tree->MayHideElements(m_index)) {
        const std::unique_ptr<SpanTree> whole = m_tree->WholeTreeOf(m_index);
        return Wide(TextOf(*whole, whole->FirstChild(SpanTree::kDocument)));
    }
    return Wide(TextOf(*m_tree, m_index));
}

std::string Element::GetXml() const
{
    return IsNull() ? std::string() : m_tree->TextOf(m_index);
}

void NodeContainer::AddText(std::u16string_view text)
{
    if (!IsNull()) {
        m_tree->AppendText(m_index, EscapeText(text));
    }
}

void NodeContainer::DeleteChildren()
{
    if (!IsNull()) {
        m_tree->SetContent(m_index, {});
    }
}

void NodeContainer::SetText(std::u16string_view text)
{
    if (IsNull()) {
        return;
    }
    const std::string escaped = EscapeText(text);
    const bool isPlain = m_tree->FirstChild(m_index) == SpanTree::kNone && IsCharacterDataOnly(m_tree->Tail(m_index));
    if (!isPlain || GetText() != text) {
        m_tree->SetContent(m_index, escaped);
    }
}

void SetAttribute(Element element, std::u16string_view name, std::u16string_view text)
{
    if (Attribute existing = element.GetAttribute(name); !existing.IsNull()) {
        existing.SetText(text);
    } else {
        element.CreateAttribute(name, text);
    }
}

}  // namespace AdvXMLParser
