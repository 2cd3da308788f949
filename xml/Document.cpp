#include "xml/Document.h"

#include <string>
#include <utility>

#include "text/Utf.h"
#include "xml/Characters.h"
#include "xml/Exceptions.h"
#include "xml/RecordBuilder.h"
#include "xml/SpanTree.h"

namespace AdvXMLParser {

namespace {

std::unique_ptr<SpanTree> MakeTree(std::u16string_view rootName)
{
    if (!IsPlainName(rootName)) {
        throw InvalidCharacterException();
    }
    const std::string tag = "<" + *zupm::ToUtf8(rootName) + "/>";
    const auto end = static_cast<std::uint32_t>(tag.size());
    RecordBuilder records(end);
    const Tag root{0, end, TagKind::Empty};
    records.Take({&root, 1});
    return std::make_unique<SpanTree>(tag, records.Finish());
}

}  // namespace

Document::Document(std::u16string_view rootName) : m_tree(MakeTree(rootName)) {}
Document::Document(std::unique_ptr<SpanTree> tree) noexcept : m_tree(std::move(tree)) {}
Document::~Document() = default;

Element Document::GetRoot() const noexcept
{
    const std::uint32_t root = m_tree->FirstChild(SpanTree::kDocument);
    return Element(m_tree.get(), root, m_tree->Generation(root));
}

XmlText Document::GenerateXML(bool) const
{
    return XmlText(m_tree->Serialize());
}

TextRuns Document::Runs() const
{
    return m_tree->Runs();
}

TextSnapshot Document::Snapshot() const
{
    return {m_tree->Runs(), m_tree->ParsedText()};
}

}  // namespace AdvXMLParser
